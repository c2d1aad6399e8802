#include "flat_fit.h"

#include <algorithm>

#include "principal_axes.h"

namespace zxhost {
namespace {

// Spreads this near to each other are the same, but for rounding.
bool alike(double larger, double smaller) { return smaller > (1.0 - 1e-9) * larger; }

template <std::size_t N>
Point<N> turned_positive(Point<N> direction) {
    const auto largest = std::max_element(direction.begin(), direction.end(),
                                          [](double a, double b) { return std::abs(a) < std::abs(b); });
    if (*largest < 0.0)
        for (double& number : direction) number = -number;
    return direction;
}

double distance(const Point<2>& from_line, const Point<2>& direction) {
    return direction[0] * from_line[1] - direction[1] * from_line[0];
}

double distance(const Point<3>& from_line, const Point<3>& direction) {
    return length(plus(from_line, direction, -dot(from_line, direction)));
}

}  // namespace

template <std::size_t N>
LineFit<N> fit_line(const std::vector<Point<N>>& points) {
    if (points.size() < 2) throw NoFit("a line needs at least two points");
    const PrincipalAxes<N> axes = principal_axes(points);
    if (axes.spread[0] <= axes.noise) throw NoFit("all points lie in one place");
    if (alike(axes.spread[0], axes.spread[1])) throw NoFit("the points lie along no direction");
    LineFit<N> fit{axes.centre, turned_positive(axes.directions[0]), {}, {}};
    for (const Point<N>& point : points) {
        const Point<N> from = minus(point, fit.point);
        fit.along.push_back(dot(from, fit.direction));
        fit.deviations.push_back(distance(from, fit.direction));
    }
    return fit;
}

template LineFit<2> fit_line(const std::vector<Point<2>>&);
template LineFit<3> fit_line(const std::vector<Point<3>>&);

PlaneFit fit_plane(const std::vector<Point<3>>& points) {
    if (points.size() < 3) throw NoFit("a plane needs at least three points");
    const PrincipalAxes<3> axes = principal_axes(points);
    if (axes.spread[0] <= axes.noise) throw NoFit("all points lie in one place");
    if (axes.spread[1] <= axes.noise) throw NoFit("the points lie on one line");
    if (alike(axes.spread[1], axes.spread[2])) throw NoFit("the points lie along no plane");
    PlaneFit fit{axes.centre, turned_positive(axes.directions[2]), {}};
    for (const Point<3>& point : points) fit.deviations.push_back(dot(minus(point, fit.point), fit.normal));
    return fit;
}

}  // namespace zxhost
