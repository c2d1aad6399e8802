// How the program ends, and the one exception that says so.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace zxhost {

enum class ExitStatus : int {
    Done = 0,
    MachineError = 1,  // the machine refused or failed, or the user aborted
    WrongUsage = 2,
    NoConnection = 3  // no machine, or one that went away
};

// What went wrong and, in `way_out`, what a person can do about it (may be empty).
struct HostError : std::runtime_error {
    HostError(ExitStatus status_, const std::string& text, std::string way_out_ = "")
        : std::runtime_error(text), status(status_), way_out(std::move(way_out_)) {}

    // Nothing more is to be told: the results have said it.
    static HostError told_already(ExitStatus status, const std::string& text) {
        HostError error(status, text);
        error.is_told = true;
        return error;
    }

    ExitStatus status;
    std::string way_out;
    bool is_told = false;
};

}  // namespace zxhost
