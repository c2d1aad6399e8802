// What process.cpp needs of the system.
#pragma once

#include "test_process.h"

namespace test_support {

class Process::Child {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Texts = std::array<std::string, 2>;  // of standard output and of the error output

    // Throws std::runtime_error if the program can't be started.
    Child(const std::string& program, const std::vector<std::string>& arguments,
          const Environment& environment, const std::string& input_file);
    ~Child();  // kills what still runs
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Appends what came next; false at the end of both streams, or of the time.
    bool read_some(Texts& texts, Time until);

    void interrupt() const;
    void kill() const;

    // Waits for its end. Afterwards it counts as gone.
    void take_status(ProcessResult& result);

    long id() const;

private:
    struct System;
    std::unique_ptr<System> m_system;
};

}  // namespace test_support
