// The frame of every request: taking the line apart, and the lines around its answer.
#include "protocol/conversation.h"

#include "append_number.h"
#include "faults/misbehave.h"
#include "messagecatalogue.h"
#include "protocol/arguments.h"
#include "protocol/requests.h"
#include "request.h"
#include "serverline.h"

namespace zendrix::sim {

namespace {

constexpr std::size_t max_open = 64;  // transactions and waiting requests of one client

bool is_digit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

Conversation::Conversation(Hub& hub, Transport& transport) : m_hub(hub), m_transport(transport) {
    m_hub.join(*this);
}

Conversation::~Conversation() { m_hub.leave(*this); }

void Conversation::greet() {
    const std::size_t begin = m_transport.out().size();
    wire::append_hello(m_transport.out(),
                       {machine().description().name, m_hub.revision().major, m_hub.revision().minor, true});
    for (const PlannedFault& fault : m_hub.faults().count(Place::connect)) {
        misbehave(fault, m_transport, begin, 0, m_hub);
    }
    m_transport.sent();
}

void Conversation::request(std::string_view line) {
    m_faults = m_hub.faults().count(Place::request);
    m_hub.advance();  // what comes before this request is told before its answer
    const std::size_t begin = m_transport.out().size();
    std::int64_t id = 0;
    std::string_view rest;
    if (!wire::split_id(line, id, rest)) {
        const bool has_id = !line.empty() && is_digit(line.front());
        error(0, has_id ? Error::tid_invalid : Error::tid_missing);
    } else if (id == 0 || m_open.contains(id)) {
        error(0, Error::tid_invalid);
    } else {
        answer(id, rest);
    }
    for (const PlannedFault& fault : m_faults) misbehave(fault, m_transport, begin, id, m_hub);
    m_transport.sent();
    go_on();
}

void Conversation::over_long_request(std::string_view begin) {
    std::int64_t id = 0;
    std::string_view rest;
    if (!wire::split_id(begin, id, rest) || m_open.contains(id)) id = 0;
    error(id, Error::buffer_overrun);
    if (id != 0) ready(id);
    m_transport.sent();
}

void Conversation::answer(std::int64_t id, std::string_view rest) {
    m_id = id;
    try {
        carry_out(rest);
    } catch (const Refused& refused) {
        error(id, refused.error);
        ready(id);
    }
}

void Conversation::carry_out(std::string_view rest) {
    wire::TokenReader arguments(rest);
    const Request& request = find_request(arguments, machine());
    meet_faults(request.words);
    if (request.kind != Request::Kind::query && m_hub.is_locked_against(*this))
        throw Refused{Error::wrong_state};
    if (m_open.size() >= max_open) throw Refused{Error::buffer_overrun};
    const Outcome outcome = (this->*request.run)(arguments);
    if (outcome == Outcome::waiting) return;
    if (request.kind == Request::Kind::transaction) wire::append_accepted(m_transport.out(), m_id);
    if (outcome == Outcome::done) return ready(m_id);
    m_open.insert(m_id);
    if (outcome == Outcome::begun) m_hub.set_owner(*this, m_id);
}

// What is planned for a request with these words; it may be that it isn't carried out at all.
void Conversation::meet_faults(std::string_view words) {
    const std::vector<PlannedFault> more = m_hub.faults().count(Place::words, words);
    m_faults.insert(m_faults.end(), more.begin(), more.end());
    for (const PlannedFault& fault : m_faults) {
        if (fault.fault == Fault::refuse) throw Refused{Error::internal_error};
    }
}

void Conversation::error(std::int64_t id, Error error) {
    std::string& out = m_transport.out();
    wire::append_id(out, id);
    out += error_text(static_cast<int>(error));
    wire::append_end(out);
}

void Conversation::ready(std::int64_t id) { wire::append_ready(m_transport.out(), id); }

void Conversation::event(const std::string& text) {
    if (!m_is_master) return;
    wire::append_event(m_transport.out(), text);
    m_transport.sent();
}

void Conversation::warning(std::int64_t id, Warning warning) {
    std::string& out = m_transport.out();
    wire::append_id(out, id);
    out += warning_text(static_cast<int>(warning));
    wire::append_end(out);
    m_transport.sent();
}

void Conversation::point(std::int64_t id, std::size_t number, const std::vector<double>& values) {
    std::string& out = m_transport.out();
    const std::size_t begin = out.size();
    wire::append_point(out, id, static_cast<std::int64_t>(number));
    for (const double value : values) append_number(out, value);
    wire::append_end(out);
    if (m_hub.faults().count_point()) {
        for (const PlannedFault& fault : m_hub.faults().at_point()) {
            misbehave(fault, m_transport, begin, id, m_hub);
        }
    }
    m_transport.sent();
}

void Conversation::end(std::int64_t id, Error result) {
    m_open.erase(id);
    if (result != Error::none) error(id, result);
    ready(id);
    m_transport.sent();
}

void Conversation::send_watch() {
    if (m_watch_id == 0 || is_congested()) return;
    m_hub.advance();
    std::string& out = m_transport.out();
    const std::size_t begin = out.size();
    wire::append_watch(out, m_watch_id);
    for (const std::string& axis : m_watched) append_number(out, machine().value(axis));
    wire::append_end(out);
    for (const PlannedFault& fault : m_hub.faults().count(Place::record)) {
        misbehave(fault, m_transport, begin, m_watch_id, m_hub);
    }
    m_transport.sent();
}

void Conversation::lock_timed_out(std::int64_t id) {
    if (m_hub.stop_waiting(*this, id)) end(id, Error::wrong_state);
}

}  // namespace zendrix::sim
