// Where all clients of the machine meet: the machine itself, its lock, whose motion runs, who hears events.
//
// One thread. A conversation joins when it begins and leaves when it ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "faults/faultplan.h"
#include "machine/blockstore.h"
#include "machine/clock.h"
#include "machine/machine.h"

namespace zendrix::sim {

class Conversation;

struct Revision {
    int major = 3;
    int minor = 0;
};

class Hub : private Listener {
public:
    Hub(const MachineDescription& description, Clock& clock, FaultPlan faults, Revision revision);

    Machine& machine() { return *m_machine; }
    BlockStore& blocks() { return m_blocks; }
    FaultPlan& faults() { return m_faults; }
    Revision revision() const { return m_revision; }

    void join(Conversation& conversation);
    // Stops the leaver's motion and gives back its lock.
    void leave(Conversation& conversation);

    // The lock counts: a client that took it twice gives it back twice.
    bool take_lock(Conversation& conversation);     // false: another client has it
    bool release_lock(Conversation& conversation);  // false: this one doesn't have it
    bool is_locked_against(const Conversation& conversation) const;
    void wait_for_lock(Conversation& conversation, std::int64_t id);
    // Gives a waiting request up; false if it got its lock already.
    bool stop_waiting(Conversation& conversation, std::int64_t id);

    // The motion that the machine has just taken up is of this request.
    void set_owner(Conversation& conversation, std::int64_t id);
    bool is_owner(const Conversation& conversation, std::int64_t id) const;

    // To every master.
    void raise(Event event);
    void raise(const std::string& text);
    // As soon as the machine isn't in the middle of something.
    void press_emergency() { m_wants_emergency = true; }

    // Brings the machine up to the clock. True if it has more to do at once.
    bool advance();
    // How long the machine can be left alone, in real time. A leaping clock leaps here.
    Clock::Duration rest();
    // No motion, no owner: the machine stands when this returns.
    void halt();

    // The machine goes away to come back with another firmware. Until restart(), nobody is to be answered.
    void restart_soon() { m_is_leaving = true; }
    bool is_leaving() const { return m_is_leaving; }
    double restart_seconds() const { return m_description.blocks.restart; }
    // It is back, as if just switched on, but with its blocks and another revision. All conversations have
    // ended before.
    void restart();

private:
    struct Waiting {
        Conversation* conversation;
        std::int64_t id;
    };

    void switch_on();
    bool is_held_up() const;
    void grant();
    void on_event(Event event) override { raise(event); }
    void on_warning(Warning warning) override;
    void on_point(std::size_t number, const std::vector<double>& values) override;
    void on_end(Error error) override;

    MachineDescription m_description;
    Clock& m_clock;
    FaultPlan m_faults;
    Revision m_revision;
    std::vector<Conversation*> m_conversations;
    Conversation* m_lock_holder = nullptr;
    int m_lock_count = 0;
    std::deque<Waiting> m_waiting;
    Conversation* m_owner = nullptr;  // null while nothing moves, or for a motion whose client has gone
    std::int64_t m_owner_id = 0;
    bool m_wants_emergency = false;
    bool m_is_leaving = false;
    BlockStore m_blocks;
    std::optional<Machine> m_machine;
};

}  // namespace zendrix::sim
