// What turns and moves without a request for it: the keypad, spindles, and whoever stands at the machine.
#include <algorithm>
#include <cmath>

#include "machine/machine.h"
#include "stl_utilities.h"

namespace zendrix::sim {

bool Machine::has_keypad() const {
    return std::any_of(m_axes.begin(), m_axes.end(), [](const Axis& axis) { return axis.is.on_keypad; });
}

std::vector<std::size_t> Machine::keypad_axes() const {
    std::vector<std::size_t> axes;
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        if (m_axes[i].is.on_keypad && m_axes[i].is_active()) axes.push_back(i);
    }
    return axes;
}

void Machine::switch_keypad(bool on, const Names& names) {
    const std::vector<std::size_t> chosen = names.empty() ? keypad_axes() : indices(names);
    for (const std::size_t i : chosen) {
        if (!m_axes[i].is.on_keypad || !m_axes[i].is_active()) throw Refused{Error::invalid_axis};
        if (on && m_axes[i].spin != 0.0) throw Refused{Error::wrong_state};
    }
    begin_handling({{0.0, [this, chosen, on] { warn_if(!hand_over(chosen, on), Warning::no_effect); }}});
}

// The event tells whether the keypad came on, went off or just changed; without a change there is none.
bool Machine::hand_over(const std::vector<std::size_t>& axes, bool to_keypad) {
    const auto is_on = [this] {
        return std::any_of(m_axes.begin(), m_axes.end(), [](const Axis& axis) { return axis.is_on_hand; });
    };
    const bool was_on = is_on();
    bool has_changed = false;
    for (const std::size_t i : axes) {
        if (std::exchange(m_axes[i].is_on_hand, to_keypad) != to_keypad) has_changed = true;
    }
    if (!has_changed) return false;
    if (is_on() == was_on) {
        m_listener.on_event(Event::keypad_changed);
    } else {
        m_listener.on_event(was_on ? Event::keypad_disabled : Event::keypad_enabled);
    }
    return true;
}

// "key-enable z/ty" and "key-disable x z" name their axes, or mean all; the machine takes those that it has.
// All other keys, and these while the machine is busy, mean something to the host alone.
void Machine::press_key(std::string_view key) {
    constexpr std::string_view enable = "key-enable";
    constexpr std::string_view disable = "key-disable";
    const bool is_enable = key.starts_with(enable);
    if (is_busy() || (!is_enable && !key.starts_with(disable))) return;
    Names names;
    stl_string_tokenize(std::string(key.substr((is_enable ? enable : disable).size())), " /", names);
    std::vector<std::size_t> chosen = keypad_axes();
    std::erase_if(chosen, [&](std::size_t i) {
        const bool is_meant =
            names.empty() || std::find(names.begin(), names.end(), m_axes[i].is.name) != names.end();
        return !is_meant || (is_enable && m_axes[i].spin != 0.0);
    });
    hand_over(chosen, is_enable);
}

void Machine::start_spin(const std::vector<Spin>& axes) {
    Names names;
    for (const Spin& spin : axes) names.push_back(spin.name);
    const std::vector<std::size_t> chosen = indices(names);
    for (const std::size_t i : chosen) {
        if (!m_axes[i].is.can_spin || !m_axes[i].is_active()) throw Refused{Error::invalid_axis};
        if (!m_axes[i].is_ready()) throw Refused{Error::not_initialized};
        if (m_axes[i].is_on_hand) throw Refused{Error::keypad_enabled};
    }
    require_idle();
    if (m_has_emergency) throw Refused{Error::emergency};
    bool has_changed = false;
    for (std::size_t n = 0; n < chosen.size(); ++n) {
        Axis& axis = m_axes[chosen[n]];
        const double wanted = axes[n].is_reverse ? -axis.is.spin_speed : axis.is.spin_speed;
        if (std::exchange(axis.spin, wanted) != wanted) has_changed = true;
    }
    if (has_changed) m_listener.on_event(Event::spin_changed);
}

void Machine::stop_spin(const Names& names) {
    std::vector<std::size_t> chosen;
    if (!names.empty()) chosen = indices(names);
    for (const std::size_t i : chosen) {
        if (!m_axes[i].is.can_spin) throw Refused{Error::invalid_axis};
    }
    require_idle();
    if (names.empty()) return stop_spins();
    bool has_changed = false;
    for (const std::size_t i : chosen) {
        if (std::exchange(m_axes[i].spin, 0.0) != 0.0) has_changed = true;
    }
    if (has_changed) m_listener.on_event(Event::spin_changed);
}

void Machine::stop_spins() {
    bool has_changed = false;
    for (Axis& axis : m_axes) {
        if (std::exchange(axis.spin, 0.0) != 0.0) has_changed = true;
    }
    if (has_changed) m_listener.on_event(Event::spin_changed);
}

void Machine::turn(double seconds) {
    for (Axis& axis : m_axes) axis.position += axis.spin * seconds;
}

void Machine::set_wobble(const Wobble& wobble) {
    const bool is_finite =
        std::all_of(wobble.begin(), wobble.end(), [](double number) { return std::isfinite(number); });
    if (!is_finite) throw Refused{Error::invalid_argument};
    m_wobble = wobble;
}

void Machine::put_out_of_use(const std::string& name) {
    const std::size_t i = index(name);
    Axis& axis = m_axes[i];
    require_idle();
    if (!axis.is_active()) throw Refused{Error::invalid_axis};
    hand_over({i}, false);
    if (std::exchange(axis.spin, 0.0) != 0.0) m_listener.on_event(Event::spin_changed);
    axis.is.kind = AxisKind::inactive;
    m_listener.on_event(Event::capabilities_changed);
}

void Machine::put_into_use(const std::string& name) {
    Axis& axis = m_axes[index(name)];
    require_idle();
    if (axis.is_active() || axis.fitted == AxisKind::inactive) throw Refused{Error::invalid_axis};
    axis.is.kind = axis.fitted;
    m_listener.on_event(Event::capabilities_changed);
}

void Machine::fit_changer(bool is_there) {
    if (!m_probes.exists()) throw Refused{Error::wrong_state};
    require_idle();
    if (m_probes.has_changer() == is_there) return;
    m_probes.fit_changer(is_there);
    m_listener.on_event(Event::capabilities_changed);
}

void Machine::withdraw(const std::string& words) {
    if (m_withdrawn.insert(words).second) m_listener.on_event(Event::capabilities_changed);
}

void Machine::restore(const std::string& words) {
    if (m_withdrawn.erase(words) > 0) m_listener.on_event(Event::capabilities_changed);
}

void Machine::place(const Targets& positions) {
    if (positions.empty()) throw Refused{Error::no_axis_specified};
    require_idle();
    for (const wire::Target& target : positions) {
        const Axis& axis = m_axes[index(target.name)];
        if (target.form != wire::TargetForm::absolute || !std::isfinite(target.value)) {
            throw Refused{Error::invalid_argument};
        }
        if (!axis.is_active() || (axis.is_driven() && !axis.is_on_hand)) throw Refused{Error::wrong_state};
        if (!axis.reaches(target.value - axis.offset)) throw Refused{Error::argument_out_of_range};
    }
    for (const wire::Target& target : positions) {
        Axis& axis = m_axes[index(target.name)];
        axis.position = target.value - axis.offset;
    }
}

}  // namespace zendrix::sim
