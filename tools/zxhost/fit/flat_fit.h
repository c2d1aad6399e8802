// The least-squares line of the plane or of space, and the least-squares plane.
#pragma once

#include <vector>

#include "point.h"

namespace zxhost {

template <std::size_t N>
struct LineFit {
    Point<N> point{};                // on it: the mean of the measured ones
    Point<N> direction{};            // of length 1; its largest component is positive
    std::vector<double> along;       // where each point lies along it, 0 at `point`
    std::vector<double> deviations;  // in the plane signed, positive to the left of the direction; in space
                                     // distances
};

struct PlaneFit {
    Point<3> point{};                // on it: the mean of the measured ones
    Point<3> normal{};               // of length 1; its largest component is positive
    std::vector<double> deviations;  // positive on the side of the normal
};

// Both go through the mean, the line along the direction of the largest spread, the plane across that of the
// smallest: these minimize the squares of the distances at right angles (K. Pearson, "On lines and planes of
// closest fit to systems of points in space", 1901).
//
// Throw NoFit: too few points, points in one place or (for a plane) on one line, points that spread alike in
// the directions that would have to differ, numbers that aren't finite.
template <std::size_t N>
LineFit<N> fit_line(const std::vector<Point<N>>& points);
PlaneFit fit_plane(const std::vector<Point<3>>& points);

}  // namespace zxhost
