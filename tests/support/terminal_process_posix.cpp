#include "terminal_process.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>

namespace test_support {

void Screen::write(const std::string& bytes) {
    for (const char c : bytes) {
        if (m_escape.empty() && c != '\x1b') {
            put(c);
            continue;
        }
        m_escape += c;
        if (m_escape.size() == 2 && c != '[') m_escape.clear();  // a sequence of two that moves nothing
        if (m_escape.size() < 3 || (c >= '0' && c <= '9') || c == ';' || c == '?') continue;
        control(c, static_cast<std::size_t>(std::atoi(m_escape.c_str() + 2)));
        m_escape.clear();
    }
}

void Screen::put(char c) {
    if (c == '\r') {
        m_column = 0;
    } else if (c == '\n') {
        ++m_row;
    } else if (c == '\b') {
        m_column -= m_column > 0;
    } else if (static_cast<unsigned char>(c) >= 0x20) {
        if (m_column == m_columns) {
            ++m_row;
            m_column = 0;
        }
        std::string& text = line();
        text.resize(std::max(text.size(), m_column + 1), ' ');
        text[m_column++] = c;
    }
}

void Screen::control(char command, std::size_t number) {
    const std::size_t steps = std::max<std::size_t>(number, 1);
    if (command == 'A') m_row -= std::min(m_row, steps);
    if (command == 'B') m_row += steps;
    if (command == 'C') m_column = std::min(m_column + steps, m_columns);
    if (command == 'D') m_column -= std::min(m_column, steps);
    if (command == 'G') m_column = std::min(steps - 1, m_columns);
    if (command == 'K') line().resize(std::min(line().size(), m_column));
    if (command == 'P' && m_column < line().size()) line().erase(m_column, steps);
    if (command == '@' && m_column < line().size()) line().insert(m_column, steps, ' ');
    if (command == 'J') {
        line().resize(std::min(line().size(), m_column));
        m_lines.resize(m_row + 1);
    }
}

std::string& Screen::line() {
    m_lines.resize(std::max(m_lines.size(), m_row + 1));
    return m_lines[m_row];
}

std::vector<std::string> Screen::lines() const {
    std::vector<std::string> result;
    for (std::string text : m_lines) {
        text.erase(text.find_last_not_of(' ') + 1);
        if (!text.empty()) result.push_back(text);
    }
    return result;
}

TerminalProcess::TerminalProcess(const std::string& program, const std::vector<std::string>& arguments,
                                 const Environment& environment, unsigned short columns)
    : m_screen(columns) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const winsize size{50, columns, 0, 0};
    m_id = forkpty(&m_terminal, nullptr, nullptr, &size);
    if (m_id < 0) throw std::runtime_error("no terminal for " + program);
    if (m_id > 0) return;
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    signal(SIGINT, SIG_DFL);
    execv(program.c_str(), pointers.data());
    _exit(127);
}

TerminalProcess::~TerminalProcess() {
    if (m_id > 0) {
        kill(m_id, SIGKILL);
        waitpid(m_id, nullptr, 0);
    }
    close(m_terminal);
}

void TerminalProcess::type(const std::string& keys) {
    if (write(m_terminal, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
        throw std::runtime_error("the terminal takes no keys");
}

// False at its end, or that of the time.
bool TerminalProcess::read_some(std::chrono::steady_clock::time_point until) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
    pollfd waiting{m_terminal, POLLIN, 0};
    if (left.count() <= 0) return false;
    const int ready = poll(&waiting, 1, static_cast<int>(left.count()));
    if (ready <= 0) return ready < 0 && errno == EINTR;
    std::array<char, 65536> buffer;
    const ssize_t count = read(m_terminal, buffer.data(), buffer.size());
    if (count > 0) m_screen.write(std::string(buffer.data(), static_cast<std::size_t>(count)));
    return count > 0 || (count < 0 && errno == EINTR);
}

bool TerminalProcess::wait_for_line(const std::string& line) {
    return wait_until([&](const Screen& screen) {
        const auto lines = screen.lines();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    });
}

bool TerminalProcess::wait_for_last_line(const std::string& line) {
    return wait_until([&](const Screen& screen) { return screen.last_line() == line; });
}

int TerminalProcess::wait() {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (read_some(end)) continue;
    if (std::chrono::steady_clock::now() >= end) kill(m_id, SIGKILL);
    int status = 0;
    while (waitpid(m_id, &status, 0) < 0 && errno == EINTR) continue;
    m_id = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string TerminalProcess::text() const {
    std::string text;
    for (const std::string& line : m_screen.lines()) text += line + "\n";
    return text;
}

}  // namespace test_support
