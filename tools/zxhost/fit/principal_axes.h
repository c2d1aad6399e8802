// Where points lie, and the directions in which they spread most and least.
#pragma once

#include <vector>

#include "point.h"

namespace zxhost {

template <std::size_t N>
struct PrincipalAxes {
    Point<N> centre{};                     // the mean of the points
    std::array<Point<N>, N> directions{};  // of length 1, at right angles to each other
    std::array<double, N> spread{};        // root mean square of the distances along each, falling
    double noise = 0.0;                    // what a spread may be from rounding alone
};

// The singular values of the centred points. Unlike the eigenvalues of the sums of squares they keep small
// spreads beside large ones. Throws NoFit without points, and for numbers that aren't finite.
template <std::size_t N>
PrincipalAxes<N> principal_axes(const std::vector<Point<N>>& points);

}  // namespace zxhost
