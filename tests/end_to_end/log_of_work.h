// The error log of a test that reaches its machine over TCP.
#pragma once

#include <string>
#include <vector>

#include "recording_facilities.h"

// What the log holds, but for what is said of the network adapters of the computer that the test runs on.
inline std::vector<std::string> log_of_work() {
    std::vector<std::string> log = recording::error_log();
    std::erase_if(log, [](const std::string& line) {
        return line.starts_with("CTcpIpSpeeder::") ||
               line.find("Open(): TCP are delays enabled") != line.npos;
    });
    return log;
}
