#include "machine/machine.h"

#include <cmath>
#include <utility>

namespace zendrix::sim {

Machine::Machine(const MachineDescription& description, Listener& listener)
    : m_description(description),
      m_listener(listener),
      m_workpiece(description.workpiece),
      m_noise(description.seed),
      m_speed(description.speed),
      m_scan_speed(description.scan_speed),
      m_scan_step(description.scan_step),
      m_probes(description.probes),
      m_probesystems(description.probesystems),
      m_wobble(description.wobble) {
    for (const AxisDescription& axis : description.axes) {
        Axis& fitted = m_axes.emplace_back(Axis{axis});
        fitted.position = axis.start;
        fitted.initialized = axis.needs_init && description.starts_initialized;
        fitted.spin = axis.spinning;
    }
    m_x = find("x");
    m_y = find("y");
    m_z = find("z");
    m_spindle = find(description.workpiece.spindle);
    select_data({});
}

void Machine::advance(double now, std::size_t max_points) {
    const double seconds = std::max(0.0, now - m_now);
    m_now += seconds;
    if (m_motion) {
        if (!m_has_begun) begin_motion();
        return advance_motion(seconds, max_points);
    }
    turn(seconds);
    if (m_handling && m_handling->advance(seconds)) end(m_result);
}

void Machine::begin_motion() {
    m_has_begun = true;
    m_listener.on_event(Event::movement_begin);
    if (std::exchange(m_touches, false)) m_listener.on_event(Event::probe_contact_lost);
}

void Machine::advance_motion(double seconds, std::size_t max_points) {
    // A scan that waits for its reader stands still; what turns by itself doesn't.
    if (is_measuring() && max_points == 0) return turn(seconds);
    for (;;) {
        const double before = seconds;
        const Motion::Reached reached = m_motion->advance(seconds);
        turn(before - seconds);
        take_positions();
        if (reached == Motion::Reached::time) return;
        if (reached == Motion::Reached::end) {
            turn(seconds);
            return finish();
        }
        if (!measure()) stop(Error::no_contact);
        if (--max_points == 0) return turn(seconds);
    }
}

double Machine::end_time() const {
    if (m_handling) return m_now + m_handling->remaining();
    return m_now + (m_motion ? m_motion->remaining() : 0.0);
}

void Machine::take_positions() {
    m_motion->positions(m_positions);
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        // A motion holds what it doesn't move where it was; what spins goes its own way.
        if (m_axes[i].spin != 0.0) m_positions[i] = m_axes[i].position;
        m_axes[i].position = m_positions[i];
    }
}

Vector3 Machine::probe_at(const Positions& positions) const {
    const auto at = [&](std::size_t axis) { return axis == no_axis ? 0.0 : positions[axis]; };
    return {at(m_x), at(m_y), at(m_z)};
}

double Machine::spindle_turn(const Positions& positions) const {
    return m_spindle == no_axis ? 0.0 : positions[m_spindle];
}

bool Machine::measure() {
    const Vector3 probe = probe_at(m_positions);
    const Workpiece::View view = m_workpiece.look(probe, spindle_turn(m_positions));
    if (view.is_beside || std::abs(view.height) > m_description.probing_range) {
        if (std::exchange(m_touches, false)) m_listener.on_event(Event::probe_contact_lost);
        return false;
    }
    if (m_points_sent++ == 0) {
        m_measuring_since = m_motion->elapsed();
        m_touches = true;
        m_listener.on_event(Event::probe_contact);
        m_listener.on_event(Event::measurement_begin);
    }
    const double deflection = m_description.workpiece.noise * m_noise.next() - view.height;
    const Vector3 surface = probe + view.normal * deflection;
    m_values.clear();
    for (const std::size_t selected : m_selection) {
        if (selected == select_time) {
            m_values.push_back(m_motion->elapsed() - m_measuring_since);
        } else if (selected == select_deflection) {
            m_values.push_back(deflection);
        } else {
            double position = m_positions[selected];
            if (selected == m_x) position = surface.x;
            if (selected == m_y) position = surface.y;
            if (selected == m_z) position = surface.z;
            m_values.push_back(position + m_axes[selected].offset);
        }
    }
    m_listener.on_point(m_points_sent, m_values);
    return true;
}

void Machine::end_measuring() {
    if (m_points_sent > 0) m_listener.on_event(Event::measurement_end);
    m_points_sent = 0;
}

void Machine::stop(Error error) {
    if (!is_busy() || m_result != Error::none) return;
    m_result = error;
    if (m_handling) return m_handling->stop();
    m_motion->stop();
    end_measuring();
}

void Machine::stop_at_once(Error error) {
    if (!is_busy()) return;
    end_measuring();
    end(error);
}

void Machine::emergency() {
    m_has_emergency = true;
    stop_at_once(Error::emergency);
    stop_spins();
}

void Machine::reset() {
    m_has_emergency = false;
    stop(Error::aborted);
}

void Machine::finish() {
    end_measuring();
    if (m_result != Error::none) return end(m_result);
    if (m_goal == Goal::initialize) {
        for (const std::size_t axis : m_to_initialize) {
            m_axes[axis].position = m_axes[axis].is.reference;
            m_axes[axis].offset = 0.0;
            m_axes[axis].initialized = true;
        }
    }
    if (m_goal == Goal::contact) {
        if (!m_has_contact) return end(Error::no_contact);
        m_touches = true;
        m_listener.on_event(Event::probe_contact);
    }
    end(Error::none);
}

void Machine::end(Error error) {
    m_handling.reset();
    if (m_motion) {
        m_motion.reset();
        m_listener.on_event(Event::movement_end);
    }
    m_listener.on_end(error);
}

}  // namespace zendrix::sim
