// What a server says that shall listen on a serial line which isn't there.
#pragma once

#include <asio.hpp>
#include <string>

#include "os/serial.h"

namespace zendrix::sim {

inline std::string cannot_listen_on_missing(const std::string& line) {
    constexpr int no_such_file = 2;  // on every system
    const asio::error_code error(no_such_file, asio::error::get_system_category());
    return "cannot listen on " + os::serial_device(line) + ": " + error.message();
}

}  // namespace zendrix::sim
