#include "machine/motion.h"

#include <algorithm>
#include <cmath>

namespace zendrix::sim {

void Motion::place_points(double step) {
    double length = 0.0;
    for (std::size_t i = 0; i < m_segments.size(); ++i) {
        if (!m_segments[i].is_measured) continue;
        length += m_segments[i].length();
        m_last_measured = i;
    }
    // Bounded before it becomes an integer: nobody measures that many points.
    const double intervals = std::min(length > 0.0 ? std::max(1.0, std::round(length / step)) : 0.0, 1e15);
    m_point_count = static_cast<std::size_t>(intervals) + 1;
    m_point_distance = intervals > 0.0 ? length / intervals : 0.0;
}

double Motion::duration() const {
    double sum = 0.0;
    for (const Segment& segment : m_segments) sum += segment.duration();
    return sum;
}

double Motion::remaining() const {
    double sum = -m_time;
    for (std::size_t i = m_current; i < m_segments.size(); ++i) sum += m_segments[i].duration();
    return std::max(0.0, sum);
}

double Motion::next_point_time() const {
    const Segment& segment = m_segments[m_current];
    if (!segment.is_measured || m_next_point >= m_point_count) return -1.0;
    const bool is_last = m_next_point + 1 == m_point_count;
    if (is_last && m_current == m_last_measured) return segment.duration();
    const double at = static_cast<double>(m_next_point) * m_point_distance - m_measured_before;
    return at <= segment.length() && !is_last ? std::max(m_time, segment.time_at(at)) : -1.0;
}

Motion::Reached Motion::advance(double& seconds) {
    while (m_current < m_segments.size()) {
        const Segment& segment = m_segments[m_current];
        const double point = next_point_time();
        const double until = (point >= 0.0 ? point : segment.duration()) - m_time;
        if (seconds < until) {
            spend(seconds, seconds);
            return Reached::time;
        }
        spend(until, seconds);
        if (point >= 0.0) {
            ++m_next_point;
            return Reached::point;
        }
        if (m_current + 1 == m_segments.size()) return Reached::end;
        if (segment.is_measured) m_measured_before += segment.length();
        ++m_current;
        m_time = 0.0;
    }
    return Reached::end;
}

void Motion::spend(double used, double& seconds) {
    m_time += used;
    m_elapsed += used;
    seconds -= used;
}

void Motion::stop() {
    if (m_current >= m_segments.size()) return;
    m_segments.erase(m_segments.begin() + static_cast<std::ptrdiff_t>(m_current) + 1, m_segments.end());
    m_segments[m_current].stop(m_time);
    m_time = 0.0;
    m_point_count = m_next_point;
}

void Motion::positions(std::vector<double>& positions) const {
    const Segment& segment = m_segments[m_current];
    segment.positions_at(segment.length_at(m_time), positions);
}

}  // namespace zendrix::sim
