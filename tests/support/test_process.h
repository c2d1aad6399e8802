// Programs as black boxes: start one, read what it says, interrupt or kill it, wait for its end.
#pragma once

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace test_support {

struct ProcessResult {
    int exit_status = -1;  // -1: it was killed, or didn't end in time
    bool killed = false;   // by itself, by kill(), or because it didn't end in time
    std::string out;
    std::string err;
};

// One child process. The destructor kills it if it still runs.
class Process {
public:
    using Environment = std::map<std::string, std::string>;  // beside, or in place of, our own
    static constexpr std::chrono::seconds patience{60};

    // Its standard input is the file of this name, or holds nothing. Throws std::runtime_error if the program
    // can't be started.
    Process(const std::string& program, const std::vector<std::string>& arguments,
            const Environment& environment = {}, const std::string& input_file = "");
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Reads until one of its streams holds this text; false if it ends, or patience does, before.
    bool wait_for(const std::string& text, std::chrono::milliseconds at_most = patience);

    void interrupt() const;  // as Ctrl-C does
    void kill() const;

    // Reads to the end of both streams and takes its status; kills it when patience ends.
    ProcessResult wait(std::chrono::milliseconds at_most = patience);

    const std::string& out() const { return m_text[0]; }
    const std::string& err() const { return m_text[1]; }
    long id() const;  // the system's number of it

private:
    class Child;  // as the system has it

    std::unique_ptr<Child> m_child;
    std::array<std::string, 2> m_text;
};

// Starts it and waits for its end.
ProcessResult run_process(const std::string& program, const std::vector<std::string>& arguments,
                          const Process::Environment& environment = {}, const std::string& input_file = "");

// Ends this very program as kill() would.
[[noreturn]] void kill_this_process();

}  // namespace test_support
