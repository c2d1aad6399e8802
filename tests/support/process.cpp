#include "test_process.h"

#include "process_child.h"

namespace test_support {

using Clock = std::chrono::steady_clock;

Process::Process(const std::string& program, const std::vector<std::string>& arguments,
                 const Environment& environment, const std::string& input_file)
    : m_child(std::make_unique<Child>(program, arguments, environment, input_file)) {}

Process::~Process() = default;

bool Process::wait_for(const std::string& text, std::chrono::milliseconds at_most) {
    const Clock::time_point until = Clock::now() + at_most;
    const auto is_there = [&] {
        return out().find(text) != std::string::npos || err().find(text) != std::string::npos;
    };
    while (!is_there())
        if (!m_child->read_some(m_text, until)) return is_there();
    return true;
}

void Process::interrupt() const { m_child->interrupt(); }

void Process::kill() const { m_child->kill(); }

long Process::id() const { return m_child->id(); }

ProcessResult Process::wait(std::chrono::milliseconds at_most) {
    const Clock::time_point until = Clock::now() + at_most;
    while (m_child->read_some(m_text, until)) continue;
    if (Clock::now() >= until) m_child->kill();
    ProcessResult result;
    m_child->take_status(result);
    result.out = out();
    result.err = err();
    return result;
}

ProcessResult run_process(const std::string& program, const std::vector<std::string>& arguments,
                          const Process::Environment& environment, const std::string& input_file) {
    return Process(program, arguments, environment, input_file).wait();
}

}  // namespace test_support
