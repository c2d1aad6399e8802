#include "plain_input.h"

#include <array>
#include <chrono>

#include "exit_status.h"
#include "interrupt.h"
#include "line_words.h"
#include "os/terminal.h"

namespace zxhost {
namespace {

constexpr std::chrono::milliseconds longest_sleep{50};

}  // namespace

LineInput::Got PlainInput::read(const Shell& shell, std::string& line) {
    prompt(shell);
    m_was_interrupted = false;
    std::size_t end = m_buffer.find('\n');
    while (end == std::string::npos && fill(shell)) {
        if (m_buffer.size() > longest_line + 2) drop_long_line(shell);
        end = m_buffer.find('\n');
    }
    if (m_was_interrupted) return Got::Interrupt;
    if (end == std::string::npos && m_buffer.empty()) return Got::End;
    line = m_buffer.substr(0, end);  // without a line feed: all there is
    m_buffer.erase(0, end == std::string::npos ? m_buffer.size() : end + 1);
    return Got::Line;
}

// Waits for more; false at the end, or when Ctrl-C came.
bool PlainInput::fill(const Shell& shell) {
    while (!m_has_ended) {
        if (InterruptMemory::take()) {
            m_buffer.clear();
            m_was_interrupted = true;
            if (m_is_prompting) m_out << std::endl;
            return false;
        }
        const std::string news = shell.news();
        if (!news.empty()) {
            m_out << (m_is_prompting ? "\n" : "") << news << std::flush;
            prompt(shell);
        }
        if (!os::wait_for_input(longest_sleep)) continue;
        std::array<char, 4096> bytes;
        const auto count = os::read_input(bytes.data(), bytes.size());
        m_has_ended = count <= 0;
        if (m_has_ended) break;
        m_buffer.append(bytes.data(), static_cast<std::size_t>(count));
        return true;
    }
    return false;
}

void PlainInput::prompt(const Shell& shell) {
    if (m_is_prompting) m_out << shell.prompt() << std::flush;
}

// Reads on to its end, keeping nothing of it.
void PlainInput::drop_long_line(const Shell& shell) {
    std::size_t end = m_buffer.find('\n');
    if (end != std::string::npos && end <= longest_line + 1) return;
    while (end == std::string::npos) {
        m_buffer.clear();
        if (!fill(shell)) break;
        end = m_buffer.find('\n');
    }
    m_buffer.erase(0, end == std::string::npos ? m_buffer.size() : end + 1);
    throw HostError(ExitStatus::WrongUsage,
                    "this line is longer than " + std::to_string(longest_line) + " bytes",
                    "write one verb on each line");
}

}  // namespace zxhost
