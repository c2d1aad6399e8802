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

#include "process_child.h"

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
    FileActions(const std::string& in, int out, int err) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, in.c_str(), O_RDONLY, 0);
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

struct Process::Child::System {
    pid_t id = -1;                     // -1: gone
    std::array<int, 2> pipes{-1, -1};  // -1: at its end
};

Process::Child::Child(const std::string& program, const std::vector<std::string>& arguments,
                      const Environment& environment, const std::string& input_file)
    : m_system(std::make_unique<System>()) {
    const std::array<int, 2> out = make_pipe();
    const std::array<int, 2> err = make_pipe();
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = merged(environment);
    FileActions actions(input_file.empty() ? "/dev/null" : input_file, out[1], err[1]);
    Attributes attributes;
    const int error = posix_spawn(&m_system->id, program.c_str(), actions.get(), attributes.get(),
                                  pointers(words).data(), pointers(variables).data());
    close(out[1]);
    close(err[1]);
    m_system->pipes = {out[0], err[0]};
    if (error == 0) return;
    for (const int end : m_system->pipes) close(end);
    throw std::runtime_error("can't start " + program + ": " + std::strerror(error));
}

Process::Child::~Child() {
    if (m_system->id > 0) {
        kill();
        ProcessResult ignored;
        take_status(ignored);
    }
    for (const int end : m_system->pipes)
        if (end >= 0) close(end);
}

bool Process::Child::read_some(Texts& texts, Time until) {
    std::array<int, 2>& pipes = m_system->pipes;
    std::array<pollfd, 2> waiting{pollfd{pipes[0], POLLIN, 0}, pollfd{pipes[1], POLLIN, 0}};
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now()).count();
    if ((pipes[0] < 0 && pipes[1] < 0) || left <= 0) return false;
    const int ready = poll(waiting.data(), waiting.size(), static_cast<int>(left));
    if (ready <= 0) return ready < 0 && errno == EINTR;
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        if (!waiting[i].revents) continue;
        std::array<char, 65536> buffer;
        const ssize_t count = read(pipes[i], buffer.data(), buffer.size());
        if (count > 0) {
            texts[i].append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            close(pipes[i]);
            pipes[i] = -1;
        }
    }
    return true;
}

void Process::Child::interrupt() const {
    if (m_system->id > 0) ::kill(m_system->id, SIGINT);
}

void Process::Child::kill() const {
    if (m_system->id > 0) ::kill(m_system->id, SIGKILL);
}

long Process::Child::id() const { return m_system->id; }

void Process::Child::take_status(ProcessResult& result) {
    int status = 0;
    while (m_system->id > 0 && waitpid(m_system->id, &status, 0) < 0 && errno == EINTR) continue;
    m_system->id = -1;
    if (WIFEXITED(status)) result.exit_status = WEXITSTATUS(status);
    result.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

void kill_this_process() {
    while (true) raise(SIGKILL);
}

}  // namespace test_support
