#include "targets.h"

#include <cmath>
#include <limits>
#include <string_view>

#include "exit_status.h"
#include "number_text.h"

namespace zxhost {
namespace {

constexpr double furthest = std::numeric_limits<double>::max();

[[noreturn]] void wrong(const std::string& text, const std::string& why, const std::string& way_out) {
    throw HostError(ExitStatus::WrongUsage, "'" + printable(text) + "': " + why, way_out);
}

std::string forms_text(TargetForms forms) {
    switch (forms) {
        case TargetForms::Absolute:
            return "write AXIS=VALUE, as in x=12.5";
        case TargetForms::Relative:
            return "write AXIS=VALUE or, from where it stands, AXIS+=VALUE";
        case TargetForms::RelativeAndLimits:
            return "write AXIS=VALUE, AXIS+=VALUE, AXIS=min or AXIS=max";
        case TargetForms::RelativeAndNames:
            return "write AXIS=VALUE, AXIS+=VALUE or, without a target, AXIS";
    }
    return "";
}

double finite_number(const std::string& text, std::string_view number, TargetForms forms) {
    const auto value = number_from(number);
    if (!value) wrong(text, "'" + printable(number) + "' is not a number", forms_text(forms));
    if (!std::isfinite(*value)) wrong(text, "a target must be a finite number", forms_text(forms));
    return *value;
}

MMachAxisTarget parse_target(const std::string& text, std::string_view value, bool relative,
                             TargetForms forms) {
    if (forms == TargetForms::RelativeAndLimits && !relative) {
        if (value == "min") return {-furthest, true};
        if (value == "max") return {furthest, true};
    }
    const double number = finite_number(text, value, forms);
    // As a relative distance this number would stand for a limit of travel.
    if (relative && std::abs(number) == furthest) wrong(text, "too far", forms_text(forms));
    return {number, relative};
}

void add_name(AxisSet& axes, const std::string& name) {
    if (name.empty()) wrong(name, "an axis needs a name", "see the machine's axes with: zxhost axes");
    if (!axes.insert(name).second) wrong(name, "this axis is named twice", "name each axis once");
}

}  // namespace

MMachAxisTargets parse_targets(const std::vector<std::string>& texts, TargetForms forms) {
    MMachAxisTargets targets;
    AxisSet named;
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos) {
            if (forms != TargetForms::RelativeAndNames) wrong(text, "no target", forms_text(forms));
            add_name(named, text);
            targets.m_axes.insert(text);
            continue;
        }
        const bool relative = equals > 0 && text[equals - 1] == '+';
        if (relative && forms == TargetForms::Absolute) wrong(text, "not relative here", forms_text(forms));
        const std::string name = text.substr(0, relative ? equals - 1 : equals);
        add_name(named, name);
        targets.m_targets[name] =
            parse_target(text, std::string_view(text).substr(equals + 1), relative, forms);
    }
    return targets;
}

std::map<std::string, double> parse_values(const std::vector<std::string>& texts) {
    std::map<std::string, double> values;
    for (const auto& [name, target] : parse_targets(texts, TargetForms::Absolute).m_targets)
        values[name] = target.value;
    return values;
}

AxisSet parse_axis_set(const std::vector<std::string>& names) {
    AxisSet axes;
    for (const std::string& name : names) add_name(axes, name);
    return axes;
}

std::vector<std::string> parse_axis_list(const std::vector<std::string>& names) {
    parse_axis_set(names);
    return names;
}

}  // namespace zxhost
