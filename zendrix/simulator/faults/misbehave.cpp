#include "faults/misbehave.h"

#include <string>

#include "linesplitter.h"
#include "protocol/hub.h"
#include "request.h"
#include "serverline.h"

namespace zendrix::sim {

namespace {

void insert(std::string& out, std::size_t begin, const std::string& line) {
    out.insert(begin, line + "\r\n");
}

void cut_in_half(std::string& out, std::size_t begin) {
    const std::size_t end = out.find('\r', begin);
    if (end != std::string::npos) out.resize(begin + (end - begin) / 2);
}

// The last value of the first line goes, with the blank before it.
void cut_last_value(std::string& out, std::size_t begin) {
    const std::size_t end = out.find('\r', begin);
    const std::size_t blank = out.rfind(' ', end);
    if (end != std::string::npos && blank != std::string::npos && blank > begin)
        out.erase(blank, end - blank);
}

// The text of the first line with its quotes; empty if there is none.
std::string_view quoted(const std::string& out, std::size_t begin) {
    const std::size_t end = out.find('\r', begin);
    const std::size_t first = out.find('"', begin);
    if (end == std::string::npos || first >= end) return {};
    return std::string_view(out).substr(first, end - first);
}

// Nothing is left of the line's text, not even its second quote.
void cut_text(std::string& out, std::size_t begin) {
    const std::string_view text = quoted(out, begin);
    if (!text.empty()) out.erase(static_cast<std::size_t>(text.data() - out.data()), text.size());
    const std::size_t end = out.find('\r', begin);
    if (end != std::string::npos && out[end - 1] == ' ') out.erase(end - 1, 1);
}

void take_quotes(std::string& out, std::size_t begin) {
    const std::string_view text = quoted(out, begin);
    if (text.size() < 2) return;
    const std::size_t first = static_cast<std::size_t>(text.data() - out.data());
    out.erase(first + text.size() - 1, 1);
    out.erase(first, 1);
}

void spoil_base64(std::string& out, std::size_t begin) {
    const std::string_view text = quoted(out, begin);
    if (text.size() > 2) out[static_cast<std::size_t>(text.data() - out.data()) + 1] = '!';
}

std::string early_ready(std::int64_t id) {
    std::string line;
    wire::append_ready(line, id);
    return line;
}

}  // namespace

void misbehave(const PlannedFault& fault, Transport& transport, std::size_t begin, std::int64_t id,
               Hub& hub) {
    std::string& out = transport.out();
    switch (fault.fault) {
        case Fault::close:
            out.resize(begin);
            transport.close();
            break;
        case Fault::reset:
            transport.reset();
            break;
        case Fault::silent:
            out.resize(begin);
            transport.mute();
            break;
        case Fault::half_line:
            cut_in_half(out, begin);
            transport.close();
            break;
        case Fault::garbage:
            insert(out, begin, "\x01\xff{garbage} \x7f");
            break;
        case Fault::long_line:
            insert(out, begin, std::string(wire::max_line + 1, 'x'));
            break;
        case Fault::unknown_id:
            insert(out, begin, "2147483647\tdata 1");
            break;
        case Fault::early_ready:
            out.insert(begin, early_ready(id));
            break;
        case Fault::gap:
            out.resize(begin);
            break;
        case Fault::twice:
            out.append(out.substr(begin));
            break;
        case Fault::slow:
            transport.hold(std::chrono::milliseconds(fault.value));
            break;
        case Fault::refuse:  // was done in place of carrying it out
            break;
        case Fault::cut:
            cut_last_value(out, begin);
            break;
        case Fault::capabilities:
            hub.raise(Event::capabilities_changed);
            break;
        case Fault::emergency:
            hub.press_emergency();
            break;
        case Fault::short_line:
            cut_text(out, begin);
            break;
        case Fault::unquoted:
            take_quotes(out, begin);
            break;
        case Fault::wrong_base64:
            spoil_base64(out, begin);
            break;
    }
}

}  // namespace zendrix::sim
