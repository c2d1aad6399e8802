// Calls of the driver that may throw what only the plug-in knows.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "exit_status.h"

namespace zxhost {

// Some queries let the exception of the client library pass, whose type a host doesn't have: such a call
// ends as a HostError of this status. The machine has already said why on the driver's channel, if it could.
template <class Function>
auto driver_call(const std::string& what, ExitStatus status, Function&& function) {
    try {
        return std::forward<Function>(function)();
    } catch (const std::exception&) {
        throw;
    } catch (...) {
        throw HostError(status, what + " failed: the machine doesn't answer as it should",
                        "the error log has the reason; try again");
    }
}

}  // namespace zxhost
