#include "process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>

extern char** environ;

namespace test_support {
namespace {

using Clock = std::chrono::steady_clock;

std::vector<std::string> merged(const Process::Environment& changes) {
    Process::Environment all = changes;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        const std::size_t equals = text.find('=');
        if (equals != std::string::npos) all.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    std::vector<std::string> lines;
    for (const auto& [name, value] : all) lines.push_back(name + "=" + value);
    return lines;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

// Both ends closed in other children.
std::array<int, 2> make_pipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("pipe() failed");
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
    return ends;
}

// Signals as a shell would give them to a program in front.
class Attributes {
public:
    Attributes() {
        posix_spawnattr_init(&m_attributes);
        sigset_t set;
        sigemptyset(&set);
        posix_spawnattr_setsigmask(&m_attributes, &set);
        for (const int number : {SIGINT, SIGTERM, SIGPIPE}) sigaddset(&set, number);
        posix_spawnattr_setsigdefault(&m_attributes, &set);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    posix_spawnattr_t* get() { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

class FileActions {
public:
    FileActions(int out, int err) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&m_actions, out, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, err, STDERR_FILENO);
    }
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    posix_spawn_file_actions_t* get() { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

}  // namespace

Process::Process(const std::string& program, const std::vector<std::string>& arguments,
                 const Environment& environment) {
    const std::array<int, 2> out = make_pipe();
    const std::array<int, 2> err = make_pipe();
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = merged(environment);
    FileActions actions(out[1], err[1]);
    Attributes attributes;
    const int error = posix_spawn(&m_id, program.c_str(), actions.get(), attributes.get(),
                                  pointers(words).data(), pointers(variables).data());
    close(out[1]);
    close(err[1]);
    m_pipes = {out[0], err[0]};
    if (error == 0) return;
    for (const int end : m_pipes) close(end);
    throw std::runtime_error("can't start " + program + ": " + std::strerror(error));
}

Process::~Process() {
    if (m_id > 0) {
        send_signal(SIGKILL);
        ProcessResult ignored;
        take_status(ignored);
    }
    for (const int end : m_pipes)
        if (end >= 0) close(end);
}

// False at the end of both streams, or of the time.
bool Process::read_some(Time until) {
    std::array<pollfd, 2> waiting{pollfd{m_pipes[0], POLLIN, 0}, pollfd{m_pipes[1], POLLIN, 0}};
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
    if ((m_pipes[0] < 0 && m_pipes[1] < 0) || left <= 0) return false;
    const int ready = poll(waiting.data(), waiting.size(), static_cast<int>(left));
    if (ready <= 0) return ready < 0 && errno == EINTR;
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        if (!waiting[i].revents) continue;
        std::array<char, 65536> buffer;
        const ssize_t count = read(m_pipes[i], buffer.data(), buffer.size());
        if (count > 0) {
            m_text[i].append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            close(m_pipes[i]);
            m_pipes[i] = -1;
        }
    }
    return true;
}

bool Process::wait_for(const std::string& text, std::chrono::milliseconds at_most) {
    const Time until = Clock::now() + at_most;
    const auto is_there = [&] {
        return out().find(text) != std::string::npos || err().find(text) != std::string::npos;
    };
    while (!is_there())
        if (!read_some(until)) return is_there();
    return true;
}

void Process::send_signal(int number) const {
    if (m_id > 0) kill(m_id, number);
}

ProcessResult Process::wait(std::chrono::milliseconds at_most) {
    const Time until = Clock::now() + at_most;
    while (read_some(until)) continue;
    if (Clock::now() >= until) send_signal(SIGKILL);
    ProcessResult result;
    take_status(result);
    result.out = out();
    result.err = err();
    return result;
}

void Process::take_status(ProcessResult& result) {
    int status = 0;
    while (m_id > 0 && waitpid(m_id, &status, 0) < 0 && errno == EINTR) continue;
    m_id = -1;
    if (WIFEXITED(status)) result.exit_status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
}

ProcessResult run_process(const std::string& program, const std::vector<std::string>& arguments,
                          const Process::Environment& environment) {
    return Process(program, arguments, environment).wait();
}

}  // namespace test_support
