#include "protocol/hub.h"

#include <algorithm>

#include "messagecatalogue.h"
#include "numbers.h"
#include "protocol/conversation.h"

namespace zendrix::sim {

namespace {

// Points between two looks at the clients: some tens of KB, well under a millisecond.
constexpr std::size_t batch = 2048;
// A scan whose clock is slow still sends its points this often.
constexpr Clock::Duration scan_tick(0.005);

// The last number in the text counts on: "1.9" and then "1.10".
std::string next_revision(const std::string& revision) {
    constexpr const char* digits = "0123456789";
    const std::size_t last = revision.find_last_of(digits);
    if (last == std::string::npos) return revision + " 2";
    std::size_t begin = revision.find_last_not_of(digits, last);
    begin = begin == std::string::npos ? 0 : begin + 1;
    std::int64_t number = 0;
    const bool is_small = wire::parse_integer(revision.substr(begin, last + 1 - begin), 0, 1000000, number);
    return revision.substr(0, begin) + std::to_string(is_small ? number + 1 : 1) + revision.substr(last + 1);
}

}  // namespace

Hub::Hub(const MachineDescription& description, Clock& clock, FaultPlan faults, Revision revision)
    : m_description(description),
      m_clock(clock),
      m_faults(std::move(faults)),
      m_revision(revision),
      m_blocks(description.blocks) {
    m_description.blocks.blocks.clear();
    switch_on();
}

void Hub::switch_on() {
    Listener& listener = *this;
    m_machine.emplace(m_description, listener);
    m_machine->advance(m_clock.now(), 0);
}

void Hub::restart() {
    m_description.revision = next_revision(m_description.revision);
    m_wants_emergency = false;
    m_is_leaving = false;
    switch_on();
}

void Hub::join(Conversation& conversation) { m_conversations.push_back(&conversation); }

void Hub::leave(Conversation& conversation) {
    std::erase(m_conversations, &conversation);
    std::erase_if(m_waiting, [&](const Waiting& waiting) { return waiting.conversation == &conversation; });
    if (m_owner == &conversation) {
        m_owner = nullptr;
        m_machine->stop(Error::aborted);
    }
    if (m_lock_holder != &conversation) return;
    m_lock_holder = nullptr;
    m_lock_count = 0;
    grant();
}

bool Hub::take_lock(Conversation& conversation) {
    if (is_locked_against(conversation)) return false;
    m_lock_holder = &conversation;
    ++m_lock_count;
    return true;
}

bool Hub::release_lock(Conversation& conversation) {
    if (m_lock_holder != &conversation) return false;
    if (--m_lock_count > 0) return true;
    m_lock_holder = nullptr;
    grant();
    return true;
}

bool Hub::is_locked_against(const Conversation& conversation) const {
    return m_lock_holder != nullptr && m_lock_holder != &conversation;
}

void Hub::wait_for_lock(Conversation& conversation, std::int64_t id) {
    m_waiting.push_back({&conversation, id});
}

bool Hub::stop_waiting(Conversation& conversation, std::int64_t id) {
    return std::erase_if(m_waiting, [&](const Waiting& waiting) {
               return waiting.conversation == &conversation && waiting.id == id;
           }) > 0;
}

void Hub::grant() {
    while (!m_waiting.empty() && take_lock(*m_waiting.front().conversation)) {
        const Waiting next = m_waiting.front();
        m_waiting.pop_front();
        next.conversation->end(next.id, Error::none);
    }
}

void Hub::set_owner(Conversation& conversation, std::int64_t id) {
    m_owner = &conversation;
    m_owner_id = id;
}

bool Hub::is_owner(const Conversation& conversation, std::int64_t id) const {
    return m_owner == &conversation && m_owner_id == id;
}

void Hub::raise(Event event) { raise(event_name(static_cast<int>(event))); }

void Hub::raise(const std::string& text) {
    for (Conversation* conversation : m_conversations) conversation->event(text);
}

bool Hub::is_held_up() const { return m_owner != nullptr && m_owner->is_congested(); }

bool Hub::advance() {
    m_machine->advance(m_clock.now(), is_held_up() ? 0 : batch);
    if (m_wants_emergency) {
        m_wants_emergency = false;
        m_machine->emergency();
        raise(Event::emergency_active);
    }
    return m_machine->is_busy() && !(m_machine->is_measuring() && is_held_up());
}

Clock::Duration Hub::rest() {
    const Clock::Duration until_end = m_clock.wait_until(m_machine->end_time());
    return m_machine->is_measuring() ? std::min(until_end, scan_tick) : until_end;
}

void Hub::halt() { m_machine->stop_at_once(Error::aborted); }

void Hub::on_warning(Warning warning) {
    if (m_owner != nullptr) m_owner->warning(m_owner_id, warning);
}

void Hub::on_point(std::size_t number, const std::vector<double>& values) {
    if (m_owner != nullptr) m_owner->point(m_owner_id, number, values);
}

void Hub::on_end(Error error) {
    Conversation* owner = std::exchange(m_owner, nullptr);
    if (owner != nullptr) owner->end(m_owner_id, error);
}

}  // namespace zendrix::sim
