#include "moutputchannel.h"

#include <cstdarg>
#include <cstdio>

#include "merrlog.h"
#include "messagecatalogue.h"
#include "mtrace.h"
#include "stl_utilities.h"

namespace {

constexpr int capabilities_changed = 1;
constexpr int machine_changed = 8;
constexpr int last_event = 96;
constexpr int unknown_event = 97;

constexpr const char* line_end = "\r\n";

std::string prefix_of(int transaction_id) {
    char text[16];
    std::snprintf(text, sizeof text, "%.4d\t", transaction_id);
    return text;
}

// An event belongs to no transaction.
std::string event_line(const std::string& full_text) { return "0000\t" + full_text + line_end; }

std::string quoted(const char* keyword, const std::string& text) {
    return std::string(keyword) + " \"" + text + "\"";
}

bool is_event(int number) { return number >= 0 && number <= last_event; }

}  // namespace

MOutputChannel::MOutputChannel(int transaction_id) : m_prefix(prefix_of(transaction_id)) {
    m_text.reserve(1000);
}

MOutputChannel::~MOutputChannel() {
    add_pending_events();
    if (m_text.empty()) return;
    _MErrLog_Location(0, "moutputchannel.cpp", __LINE__);
    _MErrLog_Add("~MOutputChannel(): Not all entries cleared for %s!", m_prefix.c_str());
    _MErrLog_Location(0, "moutputchannel.cpp", __LINE__);
    _MErrLog_Add("~MOutputChannel(): \"%s\"", m_text.c_str());
}

MOutputChannel& MOutputChannel::append_channel(const MOutputChannel& other) {
    m_text += other.m_text;
    m_error_seen |= other.m_error_seen;
    m_fatal |= other.m_fatal;
    m_capabilities_pending |= other.m_capabilities_pending;
    m_machine_changed_pending |= other.m_machine_changed_pending;
    m_event_bits |= other.m_event_bits;
    return *this;
}

void MOutputChannel::transfer_to(MOutputChannel& target) {
    target.append_channel(*this);
    clear();
}

void MOutputChannel::error(int number) {
    m_error_seen = true;
    m_text += m_prefix + error_text(number) + line_end;
}

void MOutputChannel::error(const std::string& text) {
    m_error_seen = true;
    m_text += m_prefix + quoted("error", text) + line_end;
}

void MOutputChannel::warning(int number) { m_text += m_prefix + warning_text(number) + line_end; }

void MOutputChannel::warning(const std::string& text) {
    m_text += m_prefix + quoted("warning", text) + line_end;
}

void MOutputChannel::data(const std::vector<double>& values) {
    m_text += m_prefix;
    m_text += "data";
    for (const double value : values) append_number(m_text, value);
    m_text += line_end;
}

void MOutputChannel::data(const std::string& text) { m_text += m_prefix + "data " + text + line_end; }

void MOutputChannel::event(const std::string& text) {
    const std::string full_text = quoted("event", text);
    if (!hold_back(set_event_bit(full_text))) m_text += event_line(full_text);
}

void MOutputChannel::event(int number) {
    set_event_bit(number);
    if (!hold_back(number)) m_text += event_line(event_text(number));
}

// Takes the event for a held-back one if it is one of them.
bool MOutputChannel::hold_back(int number) {
    m_capabilities_pending |= number == capabilities_changed;
    m_machine_changed_pending |= number == machine_changed;
    return number == capabilities_changed || number == machine_changed;
}

void MOutputChannel::clear() {
    m_text.clear();
    m_error_seen = false;
    m_capabilities_pending = false;
    m_machine_changed_pending = false;
    m_event_bits.reset();
}

bool MOutputChannel::take_text(std::string& out, bool with_pending) {
    if (with_pending) add_pending_events();
    if (&out != &m_text) out.swap(m_text);
    m_text.clear();
    m_event_bits.reset();
    return !out.empty();
}

bool MOutputChannel::is_empty() { return m_text.empty(); }

bool MOutputChannel::has_error() { return m_error_seen; }

void MOutputChannel::clear_error() { m_error_seen = false; }

void MOutputChannel::set_fatal() { m_fatal = true; }

bool MOutputChannel::is_fatal() { return m_fatal; }

bool MOutputChannel::test_event_bit(int number) {
    return is_event(number) && m_event_bits[static_cast<std::size_t>(number)];
}

bool MOutputChannel::any_event_bit() { return m_event_bits.any(); }

std::string MOutputChannel::get_text() {
    std::string text = m_text;
    if (m_capabilities_pending) text += event_line(event_text(capabilities_changed));
    if (m_machine_changed_pending) text += event_line(event_text(machine_changed));
    return text;
}

void MOutputChannel::add_pending_events() {
    if (m_capabilities_pending) m_text += event_line(event_text(capabilities_changed));
    if (m_machine_changed_pending) m_text += event_line(event_text(machine_changed));
    m_capabilities_pending = false;
    m_machine_changed_pending = false;
}

void MOutputChannel::set_event_bit(int number) {
    if (!is_event(number)) {
        if (_MTrace_TestLevel("default", 4)) {
            _MTrace_Location("moutputchannel.cpp", __LINE__, "default", 4);
            _MTrace_Always("set_event_bit(): unknown event: %d", number);
        }
        number = unknown_event;
    }
    m_event_bits.set(static_cast<std::size_t>(number));
}

int MOutputChannel::set_event_bit(const std::string& text) {
    int number = 0;
    while (number < unknown_event && text != event_text(number)) ++number;
    set_event_bit(number);
    return number;
}

// `result` becomes the text of the caller's variable arguments, formatted.
#define FORMATTED(result, format)                                  \
    va_list args;                                                  \
    va_start(args, format);                                        \
    const std::string result = stl_string_format_va(format, args); \
    va_end(args)

void MOutputChannel::errorf(const char* format, ...) {
    FORMATTED(text, format);
    error(text);
}

void MOutputChannel::warningf(const char* format, ...) {
    FORMATTED(text, format);
    warning(text);
}

void MOutputChannel::dataf(const char* format, ...) {
    FORMATTED(text, format);
    data(text);
}

void MOutputChannel::eventf(const char* format, ...) {
    FORMATTED(text, format);
    event(text);
}
