#include "rehearsal.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "number_text.h"
#include "open_machine.h"
#include "verb_host.h"

namespace zxhost {
namespace {

constexpr const char* see_axes = "see the machine's axes with: zxhost axes";

std::string joined(const AxisSet& axes) {
    std::string text;
    for (const std::string& axis : axes) text += (text.empty() ? "" : ", ") + printable(axis);
    return text;
}

AxisSet axes_of(const MMachAxisTargets& targets) {
    AxisSet axes = targets.m_axes;
    for (const auto& [axis, target] : targets.m_targets) axes.insert(axis);
    return axes;
}

bool has_limits(const MMachAxisInfo& axis) { return axis.number1 != 0.0 || axis.number2 != 0.0; }

// The angles in degrees at which an arc can reach furthest in x or y: both ends, and the quarters between.
std::vector<double> outermost_angles(double start, double sweep) {
    std::vector<double> angles{start, start + sweep};
    const double low = std::min(start, start + sweep);
    const double high = std::max(start, start + sweep);
    double quarter = std::ceil(low / 90.0) * 90.0;
    for (int i = 0; i < 4 && quarter <= high; ++i, quarter += 90.0) angles.push_back(quarter);
    return angles;
}

}  // namespace

void Rehearsal::examine(const Action& action) {
    m_has_examined = true;
    if (!real().IsCommandEnabled(action.class_name))
        return wrong(action.name + ": this machine has no such command",
                     "see what it knows with: zxhost info");
    QuietChannel channel(0);
    action.make(&channel);
}

std::vector<Remark> Rehearsal::take_remarks() {
    m_has_examined = false;
    return std::exchange(m_remarks, {});
}

void Rehearsal::wrong(const std::string& text, const std::string& way_out) {
    m_remarks.push_back({true, text, way_out});
}

void Rehearsal::cannot_know(const std::string& text) { m_remarks.push_back({false, text, ""}); }

// Axes, and the machine's other values: those stand in no list, but have a value.
void Rehearsal::readable(const std::string& name) {
    if (!IsAxisDefined(name) && std::isnan(GetAxisValue(name.c_str())))
        wrong("this machine has no axis or value '" + printable(name) + "'", see_axes);
}

bool Rehearsal::defined(const std::string& axis) {
    if (IsAxisDefined(axis)) return true;
    wrong("this machine has no axis '" + printable(axis) + "'", see_axes);
    return false;
}

bool Rehearsal::travels(const std::string& axis) {
    if (!defined(axis)) return false;
    if (!IsAxisActive(axis)) {
        wrong("axis '" + printable(axis) + "' is out of use", see_axes);
        return false;
    }
    if (GetAxisInfo(axis)->flags & MMACH_AXIS_BOUNDED) return true;
    wrong("axis '" + printable(axis) + "' has no drive", see_axes);
    return false;
}

void Rehearsal::each_of(const AxisSet& axes, bool (MMachAbstract::*belongs)(const std::string&),
                        const std::string& where) {
    for (const std::string& axis : axes)
        if (defined(axis) && !(real().*belongs)(axis))
            wrong("axis '" + printable(axis) + "' is not " + where, see_axes);
}

void Rehearsal::together(const AxisSet& axes, Together possible, const std::string& what) {
    if (axes.size() > 1 && !(real().*possible)(axes))
        wrong("this machine can't " + what + " with " + joined(axes) + " together");
}

void Rehearsal::within_travel(const std::string& axis, double value) {
    const MMachAxisInfo& info = *GetAxisInfo(axis);
    if (has_limits(info) && !(value >= info.number1 && value <= info.number2))
        wrong(fmt::format("{} = {:.9g} is beyond its travel from {:.9g} to {:.9g}", printable(axis), value,
                          info.number1, info.number2),
              "see how far each axis goes with: zxhost axes");
    if (info.step == 0.0 && !info.values.empty() && !info.values.contains(value))
        wrong(fmt::format("{} can't rest at {:.9g}", printable(axis), value),
              "see where it rests with: zxhost --format json axes");
}

void Rehearsal::target(const std::string& axis, const MMachAxisTarget& target) {
    const MMachAxisInfo& info = *GetAxisInfo(axis);
    const bool is_limit = std::abs(target.value) == std::numeric_limits<double>::max();
    if (is_limit) {
        m_positions[axis] = !has_limits(info)    ? std::nullopt
                            : target.value < 0.0 ? std::optional(info.number1)
                                                 : std::optional(info.number2);
        return;
    }
    std::optional<double> value = target.value;
    if (target.has_flag) {
        value = position(axis);
        if (value) *value += target.value;
    }
    if (value)
        within_travel(axis, *value);
    else
        cannot_know(
            fmt::format("whether {}+={} stays within its travel: that depends on where it stands by then",
                        printable(axis), target.value));
    m_positions[axis] = value;
}

void Rehearsal::drive(const MMachAxisTargets& targets, Together possible, const std::string& what) {
    needs_initialized();
    bool all = true;
    for (const std::string& axis : axes_of(targets)) all = travels(axis) && all;
    for (const auto& [axis, value] : targets.m_targets)
        if (IsAxisActive(axis)) target(axis, value);
    if (all) together(axes_of(targets), possible, what);
}

void Rehearsal::arc(const MMachCircle& circle) {
    needs_initialized();
    const double* const numbers = circle.parameters;
    const bool x = travels("x"), y = travels("y"), z = travels("z");
    const auto check = [&](double angle) {
        const double radians = angle * std::numbers::pi / 180.0;
        m_positions["x"] = numbers[0] + numbers[3] * std::cos(radians);
        m_positions["y"] = numbers[1] + numbers[3] * std::sin(radians);
        const std::size_t before = m_remarks.size();
        if (x) within_travel("x", *m_positions["x"]);
        if (y) within_travel("y", *m_positions["y"]);
        return m_remarks.size() == before;
    };
    const std::vector<double> angles = outermost_angles(numbers[4], numbers[5]);
    if (std::all_of(angles.begin(), angles.end(), check)) check(numbers[4] + numbers[5]);
    if (z) within_travel("z", numbers[2]);
    m_positions["z"] = numbers[2];
    for (const auto& [axis, value] : circle.axes.m_targets)
        if (travels(axis)) target(axis, value);
}

std::optional<double> Rehearsal::position(const std::string& axis) {
    const auto found = m_positions.find(axis);
    if (found != m_positions.end()) return found->second;
    const double value = m_may_stand_anywhere ? std::nan("") : GetAxisValue(axis.c_str());
    return std::isnan(value) ? std::nullopt : std::optional<double>(value);
}

void Rehearsal::needs_initialized() {
    if (!m_initializes && !IsInitialized())
        cannot_know("whether the reference marks are found by then: they are not now, and no line does it");
    m_initializes = true;
}

void Rehearsal::lose_positions() {
    m_positions.clear();
    m_may_stand_anywhere = true;
}

// Tip 0 stands for any tip of the probe.
bool Rehearsal::is_defined(long probe, long tip) {
    const bool by_line = std::any_of(m_tips.begin(), m_tips.end(), [&](const auto& known) {
        return known.second && known.first.first == probe && (tip == 0 || known.first.second == tip);
    });
    if (by_line) return true;
    if (tip == 0) return IsProbeDefined(probe);
    return !m_tips.contains({probe, tip}) && IsTipDefined(probe, tip);
}

void Rehearsal::known_probe(long probe, long tip) {
    if (is_defined(probe, tip)) return;
    const std::string name =
        tip == 0 ? fmt::format("probe {}", probe) : fmt::format("probe {} with tip {}", probe, tip);
    if (m_knows_probes)
        wrong("this machine has no " + name, "see its probes with: zxhost probes");
    else
        cannot_know("whether there is a " + name + ": the probe system changes before");
}

void Rehearsal::known_probesystem(const std::string& name, long id) {
    const auto found = m_systems.find({name, id});
    if (found != m_systems.end() ? found->second : IsProbesystemIdDefined(name, id)) return;
    wrong(fmt::format("this machine has no probe system '{}' with id {}", printable(name), id),
          "see its probe systems with: zxhost probesystems");
}

MMachGetCommand* Rehearsal::NewMMachGetCommand(MOutputChannel*, const std::vector<std::string>& axes) {
    for (const std::string& axis : axes) readable(axis);
    return nullptr;
}

MMachInitCommand* Rehearsal::NewMMachInitCommand(MOutputChannel*, const AxisSet& axes) {
    if (HasInitList())
        each_of(axes, &MMachAbstract::IsInInitList, "on the list of those that look for a reference mark");
    m_initializes = true;
    lose_positions();
    return nullptr;
}

MMachKeypadDisableCommand* Rehearsal::NewMMachKeypadDisableCommand(MOutputChannel*, const AxisSet& axes) {
    each_of(axes, &MMachAbstract::IsKeypadAxis, "on the keypad");
    return nullptr;
}

// From then on a person may drive the axes.
MMachKeypadEnableCommand* Rehearsal::NewMMachKeypadEnableCommand(MOutputChannel*, const AxisSet& axes) {
    each_of(axes, &MMachAbstract::IsKeypadAxis, "on the keypad");
    lose_positions();
    return nullptr;
}

MMachMoveCommand* Rehearsal::NewMMachMoveCommand(MOutputChannel*, const MMachAxisTargets& targets) {
    drive(targets, &MMachAbstract::IsMovePossibleWith, "move");
    return nullptr;
}

MMachMovecircleCommand* Rehearsal::NewMMachMovecircleCommand(MOutputChannel*, const MMachCircle& circle) {
    arc(circle);
    return nullptr;
}

MMachMovehomeCommand* Rehearsal::NewMMachMovehomeCommand(MOutputChannel*) {
    needs_initialized();
    lose_positions();
    return nullptr;
}

// It ends where the probe touches.
MMachMovezeroCommand* Rehearsal::NewMMachMovezeroCommand(MOutputChannel*, const MMachAxisTargets& targets) {
    drive(targets, &MMachAbstract::IsZeroMovePossibleWith, "probe");
    for (const auto& [axis, value] : targets.m_targets) m_positions[axis] = std::nullopt;
    return nullptr;
}

MMachSetCommand* Rehearsal::NewMMachSetCommand(MOutputChannel*, const std::map<std::string, double>& values) {
    for (const auto& [name, value] : values) readable(name);
    for (const auto& [name, value] : values) m_positions[name] = std::nullopt;
    return nullptr;
}

// The probe follows the workpiece: all axes may end elsewhere.
MMachScanCommand* Rehearsal::NewMMachScanCommand(MOutputChannel*, const MMachAxisTargets& targets) {
    drive(targets, &MMachAbstract::IsScanningPossibleWith, "scan");
    lose_positions();
    return nullptr;
}

MMachScancircleCommand* Rehearsal::NewMMachScancircleCommand(MOutputChannel*, const MMachCircle& circle) {
    arc(circle);
    lose_positions();
    return nullptr;
}

MMachScandataCommand* Rehearsal::NewMMachScandataCommand(MOutputChannel*,
                                                         const std::vector<std::string>& names) {
    for (const std::string& name : names)
        if (name != "time" && name != "deflection") defined(name);
    return nullptr;
}

MMachSpinDisableCommand* Rehearsal::NewMMachSpinDisableCommand(MOutputChannel*, const AxisSet& axes) {
    each_of(axes, &MMachAbstract::IsSpinAxis, "a spindle");
    return nullptr;
}

MMachSpinEnableCommand* Rehearsal::NewMMachSpinEnableCommand(MOutputChannel*,
                                                             const std::map<std::string, bool>& axes) {
    for (const auto& [axis, direction] : axes) {
        each_of({axis}, &MMachAbstract::IsSpinAxis, "a spindle");
        m_positions[axis] = std::nullopt;
    }
    return nullptr;
}

MMachProbesystemLoadCommand* Rehearsal::NewMMachProbesystemLoadCommand(MOutputChannel*,
                                                                       const std::string& name, long id) {
    known_probesystem(name, id);
    m_knows_probes = false;
    return nullptr;
}

MMachProbesystemUnloadCommand* Rehearsal::NewMMachProbesystemUnloadCommand(MOutputChannel*) {
    m_knows_probes = false;
    return nullptr;
}

MMachProbesystemDefineCommand* Rehearsal::NewMMachProbesystemDefineCommand(
    MOutputChannel*, const MMachProbesystemDefinition& definition) {
    if (!IsProbesystemSupported(definition.name))
        wrong("this machine has no probe system '" + printable(definition.name) + "'",
              "see its probe systems with: zxhost probesystems");
    m_systems[{definition.name, definition.id}] = true;
    return nullptr;
}

MMachProbesystemDeleteCommand* Rehearsal::NewMMachProbesystemDeleteCommand(MOutputChannel*,
                                                                           const std::string& name, long id) {
    known_probesystem(name, id);
    m_systems[{name, id}] = false;
    return nullptr;
}

MMachProbeLoadCommand* Rehearsal::NewMMachProbeLoadCommand(MOutputChannel*, long probe, long tip) {
    known_probe(probe, tip);
    return nullptr;
}

MMachProbeChangeCommand* Rehearsal::NewMMachProbeChangeCommand(MOutputChannel*, long probe, long tip) {
    known_probe(probe, tip);
    return nullptr;
}

MMachProbeDefineCommand* Rehearsal::NewMMachProbeDefineCommand(MOutputChannel*, long probe, long tip,
                                                               const std::map<std::string, double>&) {
    m_tips[{probe, tip}] = true;
    return nullptr;
}

MMachProbeDeleteCommand* Rehearsal::NewMMachProbeDeleteCommand(MOutputChannel*, long probe, long tip) {
    known_probe(probe, tip);
    m_tips[{probe, tip}] = false;
    return nullptr;
}

MMachProbeUnloadCommand* Rehearsal::NewMMachProbeUnloadCommand(MOutputChannel*) { return nullptr; }

MMachProbeOffsetCommand* Rehearsal::NewMMachProbeOffsetCommand(MOutputChannel*,
                                                               const AxisTargetMap& offsets) {
    for (const auto& [axis, offset] : offsets) defined(axis);
    return nullptr;
}

MMachWobbleCommand* Rehearsal::NewMMachWobbleCommand(MOutputChannel*, const MMachWobbleParameters&) {
    return nullptr;
}

bool Rehearsal::StartAutoinfo(unsigned long long, unsigned, const std::vector<std::string>& axes) {
    m_has_examined = true;
    for (const std::string& axis : axes) readable(axis);
    return true;
}

}  // namespace zxhost
