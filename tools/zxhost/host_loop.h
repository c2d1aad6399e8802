// The host's loop around one command: start it, poll it to its end, hand on all that the machine says.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "channel_lines.h"

class MMachAbstract;
class MMachCommand;
class MOutputChannel;

namespace zxhost {

class HostNotifier;

// Told of what happens while the loop runs, on the loop's thread.
class LoopListener {
public:
    virtual ~LoopListener() = default;
    virtual void on_line(const ChannelLine& line) = 0;  // of the command or of the machine itself
    virtual void on_wake() {}                           // once a turn; at least some times a second
    virtual void on_abort() {}                          // Ctrl-C: the machine has been asked to stop
};

struct CommandResult {
    bool aborted = false;
    std::vector<std::string> errors;  // what the machine said against it; each text once

    bool good() const { return !aborted && errors.empty(); }
};

class HostLoop {
public:
    using MakeCommand = std::function<MMachCommand*(MOutputChannel*)>;
    using TakeResults = std::function<void(MMachCommand&)>;

    struct Job {
        MakeCommand make;
        TakeResults take = nullptr;  // fetches results while they come; called every turn, and after the end
        TakeResults finish = nullptr;  // fetches what there is only at the end; called once, if it comes
        // False for a command that comes to its end without the machine, too: it is waited for, also when the
        // connection is lost.
        bool needs_machine = true;
    };

    // Borrows all of them.
    HostLoop(MMachAbstract& machine, MOutputChannel& channel, HostNotifier& notifier, LoopListener& listener);

    // Runs the command that `make` hands out until it is done. Ctrl-C aborts the command and the loop goes on
    // to its end; so does what `take` throws, which comes out there. Throws HostError if there is no machine,
    // or no more.
    CommandResult run(const Job& job);
    CommandResult run(const MakeCommand& make, const TakeResults& take = nullptr) {
        return run(Job{make, take});
    }

    // Hands on what the machine itself has said; throws HostError if the connection is lost.
    void poll();

    // Sleeps until the driver rings, but not long.
    void wait();

private:
    void drain(MOutputChannel& channel, CommandResult& result);
    void turn(MMachCommand& command, const TakeResults& take, std::exception_ptr& failure);
    void poll_beside(std::unique_ptr<MMachCommand>& command, const Job& job, std::exception_ptr& failure);

    MMachAbstract& m_machine;
    MOutputChannel& m_channel;
    HostNotifier& m_notifier;
    LoopListener& m_listener;
    int m_next_id = 1;
};

}  // namespace zxhost
