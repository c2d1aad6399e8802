// The machine's axes by name: looking, setting, asking what is possible.
#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "machine/machine.h"

namespace zendrix::sim {

namespace {

constexpr double max_speed = 100000.0;  // of "speed" and "scanspeed", mm/s
constexpr double max_step = 1000.0;     // of "scanstep", mm
constexpr double smallest = 0.000001;   // of all three

}  // namespace

std::size_t Machine::find(const std::string& name) const {
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        if (m_axes[i].is.name == name) return i;
    }
    return no_axis;
}

// A pseudo-axis exists, but isn't one that could move.
std::size_t Machine::index(const std::string& name) const {
    const std::size_t found = find(name);
    if (found != no_axis) return found;
    for (const Pseudo& pseudo : pseudo_axes()) {
        if (pseudo.name == name) throw Refused{Error::invalid_axis};
    }
    throw Refused{Error::unknown_axis};
}

std::vector<std::size_t> Machine::indices(const Names& names) const {
    if (names.empty()) throw Refused{Error::no_axis_specified};
    std::vector<std::size_t> result;
    for (const std::string& name : names) {
        const std::size_t axis = index(name);
        if (std::find(result.begin(), result.end(), axis) != result.end()) throw Refused{Error::invalid_axis};
        result.push_back(axis);
    }
    return result;
}

bool Machine::all_initialized() const {
    return std::all_of(m_axes.begin(), m_axes.end(), [](const Axis& axis) { return axis.is_ready(); });
}

std::vector<Machine::Pseudo> Machine::pseudo_axes() const {
    const double fixed = m_description.has_probe ? 1.0 : 0.0;
    Pseudo probe{"probe", fixed, fixed, 1.0, fixed, false};
    Pseudo tip{"tip", fixed, fixed, 1.0, fixed, false};
    if (m_probes.exists()) {
        const auto [loaded_probe, loaded_tip] = m_probes.loaded();
        probe = {"probe", 0.0, double(m_probes.highest_probe()), 1.0, double(loaded_probe), false};
        tip = {"tip", 0.0, double(m_probes.highest_tip()), 1.0, double(loaded_tip), false};
    }
    return {{"init", 0.0, 1.0, 1.0, all_initialized() ? 1.0 : 0.0, false},
            probe,
            tip,
            {"speed", smallest, max_speed, smallest, m_speed, true},
            {"scanspeed", smallest, max_speed, smallest, m_scan_speed, true},
            {"scanstep", smallest, max_step, smallest, m_scan_step, true}};
}

double Machine::value(const std::string& name) const {
    const std::size_t axis = find(name);
    if (axis != no_axis) return m_axes[axis].value();
    for (const Pseudo& pseudo : pseudo_axes()) {
        if (pseudo.name == name) return pseudo.value;
    }
    throw Refused{Error::unknown_axis};
}

double* Machine::settable_pseudo(const std::string& name) {
    if (name == "speed") return &m_speed;
    if (name == "scanspeed") return &m_scan_speed;
    if (name == "scanstep") return &m_scan_step;
    return nullptr;
}

void Machine::check_set(const Targets& values) {
    if (values.empty()) throw Refused{Error::no_axis_specified};
    std::set<std::string> seen;
    for (const wire::Target& target : values) {
        const double* pseudo = settable_pseudo(target.name);
        const std::size_t axis = pseudo ? no_axis : index(target.name);
        if (!seen.insert(target.name).second) throw Refused{Error::invalid_axis};
        if (target.form != wire::TargetForm::absolute || !std::isfinite(target.value)) {
            throw Refused{Error::invalid_argument};
        }
        if (pseudo) {
            const double upper = target.name == "scanstep" ? max_step : max_speed;
            if (target.value < smallest || target.value > upper) throw Refused{Error::argument_out_of_range};
        } else if (!m_axes[axis].is_active()) {
            throw Refused{Error::invalid_axis};
        } else if (!m_axes[axis].reaches(target.value)) {
            throw Refused{Error::argument_out_of_range};
        }
    }
}

void Machine::set(const Targets& values) {
    check_set(values);
    require_idle();
    for (const wire::Target& target : values) {
        if (double* pseudo = settable_pseudo(target.name)) {
            *pseudo = target.value;
            continue;
        }
        Axis& axis = m_axes[index(target.name)];
        if (axis.is.kind == AxisKind::value) {
            axis.position = target.value;
        } else {
            axis.offset = target.value - axis.position;
        }
    }
}

void Machine::modulo(const Names& names) {
    const std::vector<std::size_t> chosen = indices(names);
    require_idle();
    for (const std::size_t i : chosen) {
        if (m_axes[i].is.kind != AxisKind::spindle) throw Refused{Error::invalid_axis};
    }
    for (const std::size_t i : chosen) {
        m_axes[i].offset -= 360.0 * std::floor(m_axes[i].value() / 360.0);
    }
}

void Machine::set_move_base(const Names& names) {
    if (!can_move(names)) throw Refused{Error::invalid_axis};
    m_move_base = names;
}

void Machine::set_scan_base(const Names& names) {
    if (!can_scan(names)) throw Refused{Error::invalid_axis};
    m_scan_base = names;
}

bool Machine::can_move(const Names& names) const {
    const std::vector<std::size_t> chosen = indices(names);
    return std::all_of(chosen.begin(), chosen.end(), [&](std::size_t i) { return m_axes[i].is_driven(); });
}

bool Machine::can_scan(const Names& names) const {
    const std::vector<std::size_t> chosen = indices(names);
    return has_scanning() && std::all_of(chosen.begin(), chosen.end(), [&](std::size_t i) {
               return m_axes[i].is_driven() && m_axes[i].is.can_scan;
           });
}

bool Machine::can_move_to_limit(const Names& names) const {
    const std::vector<std::size_t> chosen = indices(names);
    return std::all_of(chosen.begin(), chosen.end(),
                       [&](std::size_t i) { return m_axes[i].is_driven() && m_axes[i].is.has_limits; });
}

bool Machine::has_scanning() const {
    return m_description.has_probe && m_x != no_axis && m_y != no_axis && m_z != no_axis;
}

void Machine::select_data(const Names& names) {
    std::vector<std::size_t> selection;
    for (const std::string& name : names) {
        std::size_t selected = find(name);
        if (name == "time") selected = select_time;
        if (name == "deflection") selected = select_deflection;
        if (selected == no_axis) index(name);  // tells which error it is
        if (std::find(selection.begin(), selection.end(), selected) != selection.end()) {
            throw Refused{Error::invalid_axis};
        }
        selection.push_back(selected);
    }
    if (selection.empty()) {
        for (const std::size_t axis : {m_x, m_y, m_z}) {
            if (axis != no_axis) selection.push_back(axis);
        }
    }
    m_selection = std::move(selection);
}

}  // namespace zendrix::sim
