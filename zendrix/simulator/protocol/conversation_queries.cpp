// The handlers that look, and those that change something without a motion.
#include <algorithm>
#include <chrono>
#include <map>

#include "append_number.h"
#include "protocol/arguments.h"
#include "protocol/axisnames.h"
#include "protocol/conversation.h"
#include "protocol/requests.h"
#include "request.h"
#include "serverline.h"

namespace zendrix::sim {

namespace {

using Names = std::vector<std::string>;
using Outcome = Conversation::Outcome;

constexpr std::int64_t max_interval = 3600000;  // ms of a watch
constexpr std::chrono::milliseconds lock_patience(2000);
constexpr std::chrono::milliseconds fastest_watch(1);

void append_pairs(std::string& out, std::int64_t id, const std::map<std::string, std::string>& pairs) {
    for (const auto& [name, version] : pairs) {
        wire::append_data(out, id);
        out += ' ';
        wire::append_quoted(out, name);
        out += ' ';
        wire::append_quoted(out, version);
        wire::append_end(out);
    }
}

void append_capability(std::string& out, std::int64_t id, const std::string& name, AxisKind kind,
                       std::initializer_list<double> numbers, const std::vector<double>& values) {
    wire::append_data(out, id);
    out += ' ';
    wire::append_quoted(out, name);
    append_number(out, static_cast<double>(kind));
    for (const double number : numbers) append_number(out, number);
    for (const double value : values) append_number(out, value);
    wire::append_end(out);
}

}  // namespace

void Conversation::texts(const Names& texts) {
    for (const std::string& text : texts) {
        wire::append_data(m_transport.out(), m_id);
        m_transport.out() += ' ';
        wire::append_quoted(m_transport.out(), text);
        wire::append_end(m_transport.out());
    }
}

void Conversation::yes_or_no(bool answer) {
    wire::append_data(m_transport.out(), m_id);
    append_number(m_transport.out(), answer ? 1.0 : 0.0);
    wire::append_end(m_transport.out());
}

Outcome Conversation::machine_name(Arguments& arguments) {
    no_more(arguments);
    texts({machine().description().name});
    return Outcome::done;
}

Outcome Conversation::machine_revision(Arguments& arguments) {
    no_more(arguments);
    texts({machine().description().revision});
    return Outcome::done;
}

Outcome Conversation::machine_serial(Arguments& arguments) {
    no_more(arguments);
    texts({machine().description().serial});
    return Outcome::done;
}

Outcome Conversation::machine_get(Arguments& arguments) {
    const bool at_once = arguments.keyword("now");
    no_more(arguments);
    if (m_hub.take_lock(*this)) return Outcome::done;
    if (at_once) throw Refused{Error::wrong_state};
    m_open.insert(m_id);
    m_hub.wait_for_lock(*this, m_id);
    m_transport.wait_for_lock(m_id, lock_patience);
    return Outcome::waiting;
}

Outcome Conversation::machine_release(Arguments& arguments) {
    no_more(arguments);
    if (!m_hub.release_lock(*this)) throw Refused{Error::wrong_state};
    return Outcome::done;
}

Outcome Conversation::master(Arguments& arguments) {
    no_more(arguments);
    m_is_master = true;
    return Outcome::done;
}

Outcome Conversation::ping(Arguments& arguments) {
    no_more(arguments);
    return Outcome::done;
}

Outcome Conversation::commands(Arguments& arguments) {
    no_more(arguments);
    Names words;
    for (const Request& request : requests()) {
        if (is_known(request, machine())) words.emplace_back(request.words);
    }
    texts(words);
    return Outcome::done;
}

Outcome Conversation::components(Arguments& arguments) {
    no_more(arguments);
    append_pairs(m_transport.out(), m_id, machine().description().components);
    return Outcome::done;
}

Outcome Conversation::options(Arguments& arguments) {
    no_more(arguments);
    append_pairs(m_transport.out(), m_id, machine().description().options);
    return Outcome::done;
}

Outcome Conversation::capabilities(Arguments& arguments) {
    const bool all = arguments.keyword("all");
    no_more(arguments);
    for (const Axis& axis : machine().axes()) {
        const AxisDescription& is = axis.is;
        append_capability(m_transport.out(), m_id, is.name, is.kind,
                          {is.lower, is.upper, is.resolution, is.speed, is.acceleration, is.step}, is.values);
    }
    if (!all) return Outcome::done;
    for (const Machine::Pseudo& pseudo : machine().pseudo_axes()) {
        append_capability(m_transport.out(), m_id, pseudo.name, AxisKind::value,
                          {pseudo.lower, pseudo.upper, pseudo.step, 0.0, 0.0, pseudo.step}, {});
    }
    return Outcome::done;
}

Outcome Conversation::init_list(Arguments& arguments) {
    no_more(arguments);
    texts(names_of(machine(), [](const Axis& axis) { return axis.needs_init(); }));
    return Outcome::done;
}

Outcome Conversation::init_active(Arguments& arguments) {
    no_more(arguments);
    texts(names_of(machine(), [](const Axis& axis) { return axis.initialized && axis.is_active(); }));
    return Outcome::done;
}

Outcome Conversation::get(Arguments& arguments) {
    std::vector<double> values;
    for (const std::string& name : all_names(arguments)) values.push_back(machine().value(name));
    std::string& out = m_transport.out();
    wire::append_data(out, m_id);
    for (const double value : values) append_number(out, value);
    wire::append_end(out);
    return Outcome::done;
}

Outcome Conversation::scanaxis(Arguments& arguments) {
    yes_or_no(machine().can_scan(all_names(arguments)));
    return Outcome::done;
}

Outcome Conversation::moveaxis(Arguments& arguments) {
    yes_or_no(machine().can_move(all_names(arguments)));
    return Outcome::done;
}

Outcome Conversation::movezeroaxis(Arguments& arguments) {
    yes_or_no(machine().can_scan(all_names(arguments)));
    return Outcome::done;
}

Outcome Conversation::movelimitaxis(Arguments& arguments) {
    yes_or_no(machine().can_move_to_limit(all_names(arguments)));
    return Outcome::done;
}

Outcome Conversation::watch(Arguments& arguments) {
    const std::int64_t interval = integer(arguments, -1, max_interval);
    integer(arguments, 0, max_interval);  // how late a record may be: never, here
    const Names axes = all_names(arguments);
    for (const std::string& axis : axes) machine().value(axis);
    if (interval != 0 && axes.empty()) throw Refused{Error::no_axis_specified};
    m_watched = axes;
    m_watch_id = interval == 0 ? 0 : m_id;
    const std::chrono::milliseconds wanted(interval);
    m_transport.watch_every(interval == 0 ? std::chrono::milliseconds(0) : std::max(wanted, fastest_watch));
    return Outcome::done;
}

Outcome Conversation::abort(Arguments& arguments) {
    const std::int64_t id = integer(arguments, 1, wire::max_id);
    no_more(arguments);
    if (m_hub.is_owner(*this, id)) {
        machine().stop(Error::aborted);
    } else if (m_hub.stop_waiting(*this, id) || stop_sending(id)) {
        end(id, Error::aborted);
    } else {
        throw Refused{Error::tid_unused};
    }
    return Outcome::done;
}

Outcome Conversation::reset(Arguments& arguments) {
    no_more(arguments);
    machine().reset();
    return Outcome::done;
}

Outcome Conversation::modulo(Arguments& arguments) {
    machine().modulo(all_names(arguments));
    return Outcome::done;
}

Outcome Conversation::movebase(Arguments& arguments) {
    machine().set_move_base(all_names(arguments));
    return Outcome::done;
}

Outcome Conversation::scanbase(Arguments& arguments) {
    machine().set_scan_base(all_names(arguments));
    return Outcome::done;
}

}  // namespace zendrix::sim
