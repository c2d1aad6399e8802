#include "machine/profile.h"

#include <algorithm>
#include <cmath>

namespace zendrix::sim {

Profile::Profile(double length, double speed, double acceleration)
    : m_length(length),
      m_peak(std::min(speed, std::sqrt(length * acceleration))),
      m_acceleration(acceleration) {
    if (length <= 0.0) {
        m_length = m_peak = 0.0;
        return;
    }
    m_up = m_down = m_peak / acceleration;
    m_cruise = std::max(0.0, (length - m_peak * m_up) / m_peak);
}

Profile Profile::slow_down(double speed, double acceleration) {
    Profile profile;
    profile.m_peak = speed;
    profile.m_acceleration = acceleration;
    profile.m_down = speed / acceleration;
    profile.m_length = 0.5 * speed * profile.m_down;
    return profile;
}

double Profile::position(double time) const {
    if (time <= 0.0) return 0.0;
    if (time < m_up) return 0.5 * m_acceleration * time * time;
    if (time < m_up + m_cruise) return m_peak * (time - 0.5 * m_up);
    const double rest = duration() - time;
    return rest <= 0.0 ? m_length : m_length - 0.5 * m_acceleration * rest * rest;
}

double Profile::speed(double time) const {
    if (time <= 0.0) return m_up > 0.0 ? 0.0 : m_peak;
    if (time < m_up) return m_acceleration * time;
    if (time < m_up + m_cruise) return m_peak;
    return std::max(0.0, m_acceleration * (duration() - time));
}

double Profile::time(double position) const {
    if (position <= 0.0) return 0.0;
    if (position >= m_length) return duration();
    const double ramp = 0.5 * m_peak * m_up;
    if (position < ramp) return std::sqrt(2.0 * position / m_acceleration);
    if (position <= ramp + m_peak * m_cruise) return position / m_peak + 0.5 * m_up;
    return duration() - std::sqrt(2.0 * (m_length - position) / m_acceleration);
}

}  // namespace zendrix::sim
