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
    }
}

}  // namespace zendrix::sim
