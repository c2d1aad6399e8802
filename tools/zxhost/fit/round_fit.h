// The least-squares circle of the plane, and sphere of space: the same algorithm in two and in three
// dimensions.
#pragma once

#include <vector>

#include "point.h"

namespace zxhost {

template <std::size_t N>
struct RoundFit {
    Point<N> centre{};
    double radius = 0.0;
    double radius_deviation = 0.0;   // standard deviation of the radius, from the scatter of the points
    std::vector<double> deviations;  // of each point from the shape, outwards positive
};

// The start is the algebraic fit |p|^2 = 2 c.p + k, linear in c and k (I. Kasa, "A circle fitting procedure
// and its error analysis", 1976; I. D. Coope, "Circle fitting by linear and nonlinear least squares", 1993,
// for any dimension). From there Gauss-Newton with halved steps minimizes the squares of the distances to the
// shape itself (A. B. Forbes, "Least-squares best-fit geometric elements", NPL report DITC 140/89, 1991).
//
// Throws NoFit: too few points (three for a circle, four for a sphere), points on one line or in one plane,
// an arc or cap so flat that its radius drowns in the scatter, numbers that aren't finite.
template <std::size_t N>
RoundFit<N> fit_round(const std::vector<Point<N>>& points);

}  // namespace zxhost
