// One stretch of a motion: from where to where, and how fast.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "machine/axis.h"
#include "machine/profile.h"

namespace zendrix::sim {

// A spiral in the plane of two axes; a circular arc if both radii are equal. Angles in degrees from the first
// axis, positive towards the second.
struct Arc {
    std::size_t first = 0;  // indices of the axes
    std::size_t second = 0;
    double center_first = 0.0;
    double center_second = 0.0;
    double radius = 0.0;
    double end_radius = 0.0;
    double start = 0.0;
    double sweep = 0.0;

    // The positions of both axes.
    struct Point {
        double first;
        double second;
    };
    Point at(double fraction) const;
};

// Positions are the machine's own, one per axis of the machine.
class Segment {
public:
    // All axes run together, the slowest sets the pace. `speed` bounds the pace along the length.
    Segment(const std::vector<Axis>& axes, std::vector<double> from, std::vector<double> to, double speed,
            const std::optional<Arc>& arc = std::nullopt);

    // In mm, or in degrees (or an axis' own units) where these are more.
    double length() const { return m_length; }
    const std::vector<double>& end() const { return m_to; }
    double duration() const { return m_profile.duration(); }

    double length_at(double time) const { return m_begin + m_profile.position(time); }
    double time_at(double length) const { return m_profile.time(length - m_begin); }
    void positions_at(double length, std::vector<double>& positions) const;

    // Ends the travel at this length instead of the whole.
    void shorten(double length);
    // Slows down from now on; `time` counts anew.
    void stop(double time);

    bool is_measured = false;

private:
    void limit(double axis_speed, double axis_acceleration, double share);

    std::vector<double> m_from;
    std::vector<double> m_to;
    std::optional<Arc> m_arc;
    double m_length = 0.0;
    double m_begin = 0.0;  // the length at which the profile begins
    double m_speed;
    double m_acceleration = std::numeric_limits<double>::infinity();
    Profile m_profile;
};

}  // namespace zendrix::sim
