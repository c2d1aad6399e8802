// A motion under way: its stretches one after the other, and the points to be measured on it.
#pragma once

#include <cstddef>
#include <vector>

#include "machine/path.h"

namespace zendrix::sim {

class Motion {
public:
    enum class Reached { time, point, end };

    void add(Segment segment) { m_segments.push_back(std::move(segment)); }

    // Spreads points evenly over the measured stretches, the first and the last at their very ends, as near
    // as possible to `step` apart; a measured length of 0 has one point. Call it after the last add().
    void place_points(double step);
    std::size_t point_count() const { return m_point_count; }

    double duration() const;

    // Goes on for up to `seconds`, which it lessens by what it used; halts at a point to be measured and at
    // the end.
    Reached advance(double& seconds);

    // Slows down to a stand on the present stretch; nothing more is measured.
    void stop();

    // Seconds until the end, if nothing stops it.
    double remaining() const;

    // Since the begin, without the time in which nobody called advance().
    double elapsed() const { return m_elapsed; }

    // One per axis; where the motion is now.
    void positions(std::vector<double>& positions) const;
    Segment& current() { return m_segments[m_current]; }
    const std::vector<Segment>& segments() const { return m_segments; }

private:
    void spend(double used, double& seconds);
    // Of the next point on the present stretch, in seconds of it; negative if it has none.
    double next_point_time() const;

    std::vector<Segment> m_segments;
    std::size_t m_current = 0;
    double m_time = 0.0;  // since the begin of the present stretch
    double m_elapsed = 0.0;
    std::size_t m_point_count = 0;
    std::size_t m_next_point = 0;
    double m_point_distance = 0.0;
    double m_measured_before = 0.0;  // measured length before the present stretch
    std::size_t m_last_measured = 0;
};

}  // namespace zendrix::sim
