// A program at a terminal: what is typed goes in, and the screen shows what a person would see. POSIX.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace test_support {

// A screen without colours: it knows the movements that a line editor makes.
class Screen {
public:
    explicit Screen(std::size_t columns) : m_columns(columns), m_lines(1) {}

    void write(const std::string& bytes);

    // The lines that hold something, without blanks at their ends.
    std::vector<std::string> lines() const;
    std::string last_line() const { return lines().empty() ? "" : lines().back(); }

private:
    void put(char c);
    void control(char command, std::size_t number);
    std::string& line();

    std::size_t m_columns;
    std::vector<std::string> m_lines;
    std::size_t m_row = 0;
    std::size_t m_column = 0;
    std::string m_escape;  // a sequence that isn't whole yet
};

class TerminalProcess {
public:
    using Environment = std::map<std::string, std::string>;
    static constexpr std::chrono::seconds patience{60};

    // Throws std::runtime_error if it can't be started.
    TerminalProcess(const std::string& program, const std::vector<std::string>& arguments,
                    const Environment& environment, unsigned short columns = 80);
    ~TerminalProcess();
    TerminalProcess(const TerminalProcess&) = delete;
    TerminalProcess& operator=(const TerminalProcess&) = delete;

    void type(const std::string& keys);

    // Reads until the screen is so; false if it ends, or patience does, before.
    template <class Condition>
    bool wait_until(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!condition(m_screen))
            if (!read_some(end)) return condition(m_screen);
        return true;
    }
    bool wait_for_line(const std::string& line);  // some line of the screen is exactly this
    bool wait_for_last_line(const std::string& line);

    // Reads to its end; the exit status, -1 if a signal ended it or patience did.
    int wait();

    const Screen& screen() const { return m_screen; }
    std::string text() const;  // the screen, for messages

private:
    bool read_some(std::chrono::steady_clock::time_point until);

    pid_t m_id = -1;
    int m_terminal = -1;
    Screen m_screen;
};

}  // namespace test_support
