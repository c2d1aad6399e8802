#include "spin_axes.h"

#include <cstddef>

#include "exit_status.h"
#include "number_text.h"

namespace zxhost {
namespace {

[[noreturn]] void wrong(const std::string& text, const std::string& why) {
    throw HostError(ExitStatus::WrongUsage, "'" + printable(text) + "': " + why,
                    "write AXIS or AXIS=+ to turn forward, AXIS=- to turn in reverse");
}

}  // namespace

std::map<std::string, bool> parse_spin_axes(const std::vector<std::string>& texts) {
    std::map<std::string, bool> axes;
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        const std::string name = text.substr(0, equals);
        const std::string sign = equals == std::string::npos ? "+" : text.substr(equals + 1);
        if (name.empty()) wrong(text, "an axis needs a name");
        if (sign != "+" && sign != "-") wrong(text, "a sense of turning is + or -");
        if (!axes.emplace(name, sign == "+").second) wrong(text, "this axis is named twice");
    }
    return axes;
}

}  // namespace zxhost
