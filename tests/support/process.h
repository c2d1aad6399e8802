// Programs as black boxes: start one, read what it says, send it a signal, wait for its end. POSIX.
#pragma once

#include <sys/types.h>

#include <array>
#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace test_support {

struct ProcessResult {
    int exit_status = -1;  // -1: it was ended by a signal, or didn't end in time
    int signal = 0;        // that ended it
    std::string out;
    std::string err;
};

// One child process with nothing on its standard input. The destructor kills what still runs.
class Process {
public:
    using Environment = std::map<std::string, std::string>;  // beside, or in place of, our own
    static constexpr std::chrono::seconds patience{60};

    // Throws std::runtime_error if it can't be started.
    Process(const std::string& program, const std::vector<std::string>& arguments,
            const Environment& environment = {});
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Reads until one of its streams holds this text; false if it ends, or patience does, before.
    bool wait_for(const std::string& text, std::chrono::milliseconds at_most = patience);

    void send_signal(int number) const;

    // Reads to the end of both streams and takes its status; kills it when patience ends.
    ProcessResult wait(std::chrono::milliseconds at_most = patience);

    const std::string& out() const { return m_text[0]; }
    const std::string& err() const { return m_text[1]; }
    pid_t id() const { return m_id; }

private:
    using Time = std::chrono::steady_clock::time_point;

    bool read_some(Time until);
    void take_status(ProcessResult& result);

    pid_t m_id = -1;
    std::array<int, 2> m_pipes{-1, -1};  // -1: at its end
    std::array<std::string, 2> m_text;
};

// Starts it and waits for its end.
ProcessResult run_process(const std::string& program, const std::vector<std::string>& arguments,
                          const Process::Environment& environment = {});

}  // namespace test_support
