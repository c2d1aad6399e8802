// Machines, clients without sockets, and a clock to move by hand.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "machine/descriptionreader.h"
#include "machine/machine.h"
#include "protocol/conversation.h"
#include "protocol/hub.h"
#include "protocol/transport.h"

namespace rig {

using namespace zendrix::sim;

// Three straight axes and a spindle, all alike and ready, with a ring of radius 20 about (0, 0): numbers that
// one can check in the head.
inline MachineDescription plain_machine() {
    return parse_machine(
        "[machine]\nname=Plain\ninitialized=1\n"
        "[motion]\nspeed=10\nscanspeed=10\nscanstep=1\n[probe]\nrange=1\nmax_points=10000\n"
        "[axis x]\nkind=linear\nlower=-100\nupper=100\nspeed=100\nacceleration=10\nscan=1\n"
        "[axis y]\nkind=linear\nlower=-100\nupper=100\nspeed=100\nacceleration=10\nscan=1\n"
        "[axis z]\nkind=linear\nlower=-100\nupper=100\nspeed=100\nacceleration=10\nscan=1\n"
        "[axis c]\nkind=spindle\nspeed=90\nacceleration=90\nscan=1\n"
        "[workpiece]\nkind=ring\nradius=20\n",
        "plain.ini");
}

// Writes down what a machine reports.
struct Recorder : Listener {
    void on_event(Event event) override { events.push_back(event); }
    void on_warning(Warning warning) override { warnings.push_back(warning); }
    void on_point(std::size_t number, const std::vector<double>& values) override {
        numbers.push_back(number);
        points.push_back(values);
    }
    void on_end(Error error) override { ends.push_back(error); }

    std::vector<Event> events;
    std::vector<Warning> warnings;
    std::vector<std::size_t> numbers;
    std::vector<std::vector<double>> points;
    std::vector<Error> ends;
};

constexpr std::size_t no_limit = static_cast<std::size_t>(-1);

inline wire::Target to(const std::string& axis, double value) {
    return {axis, value, wire::TargetForm::absolute};
}
inline wire::Target by(const std::string& axis, double value) {
    return {axis, value, wire::TargetForm::relative};
}
inline wire::Target form(const std::string& axis, wire::TargetForm target_form) {
    return {axis, 0.0, target_form};
}

// The error that an action is refused with.
template <class Action>
Error refusal(Action action) {
    try {
        action();
    } catch (const Refused& refused) {
        return refused.error;
    }
    return Error::none;
}

// A client's connection that keeps everything in memory.
struct FakeTransport : Transport {
    std::string& out() override { return text; }
    void sent() override {}
    bool is_congested() const override { return congested; }
    void watch_every(std::chrono::milliseconds interval) override { watch = interval; }
    void wait_for_lock(std::int64_t id, std::chrono::milliseconds) override { lock_waits.push_back(id); }
    void close() override { closed = true; }
    void reset() override { was_reset = true; }
    void mute() override { muted = true; }
    void hold(std::chrono::milliseconds delay) override { held = delay; }

    std::string text;
    bool congested = false;
    std::chrono::milliseconds watch{-1};
    std::vector<std::int64_t> lock_waits;
    bool closed = false;
    bool was_reset = false;
    bool muted = false;
    std::chrono::milliseconds held{0};
};

struct Client {
    explicit Client(Hub& hub) : conversation(std::make_unique<Conversation>(hub, transport)) {}

    // What the server says since the last look.
    std::string take() { return std::exchange(transport.text, {}); }
    std::string ask(const std::string& line) {
        conversation->request(line);
        return take();
    }

    FakeTransport transport;
    std::unique_ptr<Conversation> conversation;
};

// A machine, its clock and its first client.
struct Rig {
    explicit Rig(const MachineDescription& description = plain_machine(), const FaultPlan& faults = {})
        : hub(description, clock, faults, {3, 0}), client(hub) {}

    // Lets machine time pass, in steps as a server would take them.
    void pass(double seconds) {
        clock.advance(seconds);
        while (hub.advance() && hub.rest() <= Clock::Duration::zero()) {
        }
    }

    ManualClock clock;
    Hub hub;
    Client client;
};

}  // namespace rig
