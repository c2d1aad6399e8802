#include "raster_roles.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "channel_lines.h"
#include "exit_status.h"
#include "known_names.h"
#include "mmachabstract.h"
#include "open_machine.h"
#include "way_out.h"

namespace zxhost {
namespace {

using Names = std::vector<std::string>;

constexpr std::array role_names{"raster1", "raster2", "raster3", "rotary"};
const AxisSet raster_axes{"x", "y", "z", "c", "kx", "ky", "tx", "ty", "tz"};

AxisTargetMap targets_of(const AxisSet& axes) {
    AxisTargetMap targets;
    for (const std::string& axis : axes) targets[axis];
    return targets;
}

// What the interface decides; throws what it says against the request.
std::array<std::string, role_names.size()> decide(MMachAbstract& machine, const RasterRequest& request) {
    const AxisSet axes = request.groups.empty() ? AxisSet() : request.groups.front();
    const AxisTargetMap targets = targets_of(axes);
    QuietChannel channel(0);
    std::array<const char*, role_names.size()> is{};
    const auto ask = [&] {
        switch (request.form) {
            case RasterForm::Polygon: {
                std::vector<AxisTargetMap> points;
                for (const AxisSet& group : request.groups) points.push_back(targets_of(group));
                return machine.GetRasterAxes(channel, points, is[0], is[1], is[2], is[3]);
            }
            case RasterForm::Circle: {
                MMachCircle circle;
                circle.axes.m_targets = targets;
                return machine.GetRasterAxes(channel, circle, is[0], is[1], is[2], is[3]);
            }
            case RasterForm::Scanbase:
                return machine.GetScanbaseAxes(channel, axes, is[0], is[1], is[2], is[3]);
            case RasterForm::Axes:
                break;
        }
        return machine.GetRasterAxes(channel, targets, is[0], is[1], is[2], is[3]);
    };
    const bool is_decided = ask();
    std::array<std::string, role_names.size()> names;
    for (std::size_t i = 0; i < is.size(); ++i) names[i] = is[i] ? is[i] : "";
    if (is_decided) return names;
    const std::vector<ChannelLine> lines = take_lines(channel);
    const std::string error = lines.empty() ? "refused" : lines.front().text;
    throw HostError(ExitStatus::MachineError, "raster: " + error, way_out_of(error));
}

// The axes that the rules try for each role, in their order. The first that is active takes it.
class Tries {
public:
    Tries(MMachAbstract& machine, const RasterRequest& request)
        : m_machine(machine), m_asked(request.axes()) {
        if (request.form == RasterForm::Scanbase)
            scanbase();
        else
            raster();
    }

    const Names& of(std::size_t role) const { return m_tries[role]; }

private:
    bool has(const char* axis) const { return m_asked.contains(axis); }

    void add(std::size_t role, const char* axis) {
        Names& tries = m_tries[role];
        if (std::find(tries.begin(), tries.end(), axis) == tries.end()) tries.push_back(axis);
    }

    void add_pair(const char* first, const char* second) {
        add(0, first);
        add(1, second);
    }

    bool pair_is_empty() const {
        const auto is_active = [&](const std::string& axis) { return m_machine.IsAxisActive(axis); };
        return std::none_of(m_tries[0].begin(), m_tries[0].end(), is_active) &&
               std::none_of(m_tries[1].begin(), m_tries[1].end(), is_active);
    }

    void scanbase() {
        if (m_asked.size() == 1) return add(0, m_asked.begin()->c_str());
        constexpr std::array axes{"x", "y", "z", "c"};
        for (std::size_t role = 0; role < axes.size(); ++role)
            if (has(axes[role])) add(role, axes[role]);
    }

    void raster() {
        if (m_asked.size() == 1 && !raster_axes.contains(*m_asked.begin()))
            return add(0, m_asked.begin()->c_str());
        const bool k = has("kx") || has("ky");
        const bool t = has("tx") || has("ty");
        const bool main = has("x") || has("y") || has("z");
        if (k)
            add_pair("kx", "ky");
        else if (t)
            add_pair("tx", "ty");
        else if (main)
            add_pair("x", "y");
        if (pair_is_empty()) {
            if (has("z"))
                add_pair("x", "y");
            else if (has("tz"))
                add_pair("tx", "ty");
        }
        if (has("z")) add(2, "z");
        if (has("tz")) add(2, "tz");
        if (k || t || main) {
            add(2, "z");
            add(2, "tz");
        }
        if (has("c")) add(3, "c");
    }

    MMachAbstract& m_machine;
    AxisSet m_asked;
    std::array<Names, role_names.size()> m_tries;
};

std::string why_not(MMachAbstract& machine, const std::string& axis) {
    return machine.IsAxisDefined(axis) ? axis + " is inactive" : "this machine has no " + axis;
}

std::string reason_of(MMachAbstract& machine, const AxisSet& asked, const Names& tries,
                      const std::string& axis) {
    if (!axis.empty() && asked.contains(axis)) return "asked for";
    std::string text;
    for (const std::string& each : tries) {
        if (each == axis) break;
        text += (text.empty() ? "" : ", ") + why_not(machine, each);
    }
    if (axis.empty()) return text.empty() ? "not asked for" : text;
    return text.empty() ? "completes the raster" : "stands in: " + text;
}

}  // namespace

AxisSet RasterRequest::axes() const {
    AxisSet axes;
    if (form == RasterForm::Circle) axes = {"x", "y", "z"};
    for (const AxisSet& group : groups) axes.insert(group.begin(), group.end());
    return axes;
}

std::vector<RasterRole> raster_roles(MMachAbstract& machine, const RasterRequest& request) {
    const auto decided = decide(machine, request);
    const AxisSet asked = request.axes();
    const Tries tries(machine, request);
    std::vector<RasterRole> roles;
    for (std::size_t i = 0; i < decided.size(); ++i)
        roles.push_back({role_names[i], decided[i], reason_of(machine, asked, tries.of(i), decided[i])});
    for (const std::string& axis : asked)
        if (!raster_axes.contains(axis) && axis != decided[0])
            roles.push_back({"", axis, "takes no part in a raster"});
    return roles;
}

}  // namespace zxhost
