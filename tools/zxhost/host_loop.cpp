#include "host_loop.h"

#include <algorithm>
#include <chrono>
#include <memory>

#include "exit_status.h"
#include "interrupt.h"
#include "mmachabstract.h"
#include "notifier.h"
#include "open_machine.h"

namespace zxhost {

// The slow clock beside the notifier: how late a Ctrl-C or a lost machine may be seen.
constexpr std::chrono::milliseconds longest_sleep{20};

namespace {

void fetch(MMachCommand& command, const HostLoop::TakeResults& take, std::exception_ptr& failure) {
    try {
        if (take && !failure) take(command);
    } catch (...) {
        failure = std::current_exception();
    }
}

// The driver may still speak to a command that hasn't come to its end, until the connection is closed; by
// then the driver that the command would need at its own end is gone.
void keep_for_good(MMachCommand* command) {
    static auto& kept = *new std::vector<MMachCommand*>;
    kept.push_back(command);
}

}  // namespace

HostLoop::HostLoop(MMachAbstract& machine, MOutputChannel& channel, HostNotifier& notifier,
                   LoopListener& listener)
    : m_machine(machine), m_channel(channel), m_notifier(notifier), m_listener(listener) {}

CommandResult HostLoop::run(const Job& job) {
    const InterruptWatch watch;
    CommandResult result;
    std::exception_ptr failure;
    QuietChannel channel(m_next_id++);
    std::unique_ptr<MMachCommand> command(job.make(&channel));
    const bool started = command != nullptr;
    while (command) {
        const bool done = command->IsDone();
        turn(*command, job.take, failure);
        drain(channel, result);
        if (done) break;
        if ((failure || watch.interrupted()) && !result.aborted) {
            result.aborted = true;
            m_listener.on_abort();
            command->Abort();
        }
        poll_beside(command, job, failure);
        wait();
    }
    if (command) fetch(*command, job.finish, failure);
    result.aborted = result.aborted || watch.interrupted();
    command.reset();
    drain(channel, result);
    if (failure) std::rethrow_exception(failure);
    poll();
    if (!started && result.errors.empty())
        throw HostError(ExitStatus::NoConnection, "there is no machine to command", "connect again");
    return result;
}

// Hands on what the machine itself says while a command runs. A lost machine ends the command, unless that
// one goes on without it; poll tells of the loss again at its end.
void HostLoop::poll_beside(std::unique_ptr<MMachCommand>& command, const Job& job,
                           std::exception_ptr& failure) {
    try {
        poll();
    } catch (const HostError&) {
        if (!job.needs_machine) return;
        turn(*command, job.take, failure);  // what came before the machine was lost
        if (job.finish) keep_for_good(command.release());
        throw;
    }
}

void HostLoop::turn(MMachCommand& command, const TakeResults& take, std::exception_ptr& failure) {
    fetch(command, take, failure);
    m_listener.on_wake();
}

void HostLoop::drain(MOutputChannel& channel, CommandResult& result) {
    for (const ChannelLine& line : take_lines(channel)) {
        auto& errors = result.errors;
        if (line.keyword == "error" && std::find(errors.begin(), errors.end(), line.text) == errors.end())
            errors.push_back(line.text);
        m_listener.on_line(line);
    }
}

void HostLoop::poll() {
    m_machine.PollAsyncErrors();
    for (const ChannelLine& line : take_lines(m_channel)) m_listener.on_line(line);
    if (m_channel.is_fatal())
        throw HostError(ExitStatus::NoConnection, "fatal: machine connection lost",
                        "look after the machine and its network, then start again");
}

void HostLoop::wait() { m_notifier.wait(longest_sleep); }

}  // namespace zxhost
