#include "machine/path.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "machine/vector3.h"

namespace zendrix::sim {

Arc::Point Arc::at(double fraction) const {
    const double r = radius + (end_radius - radius) * fraction;
    const double angle = radians(start + sweep * fraction);
    return {center_first + r * std::cos(angle), center_second + r * std::sin(angle)};
}

Segment::Segment(const std::vector<Axis>& axes, std::vector<double> from, std::vector<double> to,
                 double speed, const std::optional<Arc>& arc)
    : m_from(std::move(from)), m_to(std::move(to)), m_arc(arc), m_speed(speed) {
    const auto is_on_arc = [&](std::size_t i) { return arc && (i == arc->first || i == arc->second); };
    double lengths = 0.0;  // squared
    double others = 0.0;
    double along_arc = 0.0;
    if (arc) {
        along_arc = std::hypot(0.5 * (arc->radius + arc->end_radius) * radians(arc->sweep),
                               arc->end_radius - arc->radius);
        lengths = along_arc * along_arc;
    }
    for (std::size_t i = 0; i < axes.size(); ++i) {
        const double way = m_to[i] - m_from[i];
        if (!is_on_arc(i)) (axes[i].is_length() ? lengths : others) += way * way;
    }
    m_length = std::sqrt(std::max(lengths, others));
    if (m_length == 0.0) return;
    for (std::size_t i = 0; i < axes.size(); ++i) {
        const double way = is_on_arc(i) ? along_arc : std::abs(m_to[i] - m_from[i]);
        if (way > 0.0) limit(axes[i].is.speed, axes[i].is.acceleration, way / m_length);
    }
    m_profile = Profile(m_length, m_speed, m_acceleration);
}

void Segment::limit(double axis_speed, double axis_acceleration, double share) {
    m_speed = std::min(m_speed, axis_speed / share);
    m_acceleration = std::min(m_acceleration, axis_acceleration / share);
}

void Segment::positions_at(double length, std::vector<double>& positions) const {
    if (m_length == 0.0 || (length >= m_length && !m_arc)) {
        positions = m_to;
        return;
    }
    const double fraction = std::min(1.0, length / m_length);
    positions.resize(m_from.size());
    for (std::size_t i = 0; i < m_from.size(); ++i) {
        positions[i] = m_from[i] + (m_to[i] - m_from[i]) * fraction;
    }
    if (!m_arc) return;
    const Arc::Point point = m_arc->at(fraction);
    positions[m_arc->first] = point.first;
    positions[m_arc->second] = point.second;
}

void Segment::shorten(double length) { m_profile = Profile(length, m_speed, m_acceleration); }

void Segment::stop(double time) {
    const double speed = m_profile.speed(time);
    const double here = length_at(time);
    m_begin = here;
    m_profile = speed > 0.0 ? Profile::slow_down(speed, m_acceleration) : Profile();
}

}  // namespace zendrix::sim
