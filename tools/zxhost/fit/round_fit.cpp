#include "round_fit.h"

#include <algorithm>

#include "linear_equations.h"
#include "principal_axes.h"

namespace zxhost {
namespace {

constexpr const char* too_flat = "the points are too flat to tell a radius from their scatter";

template <std::size_t N>
struct Round {
    Point<N> centre{};
    double radius = 0.0;
};

// The points about their mean and in units of their spread, in which a step or a sum can be called small.
template <std::size_t N>
std::vector<Point<N>> normalized(const std::vector<Point<N>>& points, const PrincipalAxes<N>& axes) {
    std::vector<Point<N>> result;
    result.reserve(points.size());
    for (const Point<N>& point : points) {
        result.push_back(minus(point, axes.centre));
        for (double& number : result.back()) number /= axes.spread[0];
    }
    return result;
}

template <std::size_t N>
std::array<double, N + 1> row_of(const Point<N>& point) {
    std::array<double, N + 1> row{};
    std::copy(point.begin(), point.end(), row.begin());
    row[N] = 1.0;
    return row;
}

template <std::size_t N>
Round<N> algebraic_fit(const std::vector<Point<N>>& points) {
    NormalEquations<N + 1> equations;
    for (const Point<N>& point : points) equations.add(row_of<N>(point), dot(point, point));
    const auto solution = solve(equations);
    if (!solution) throw NoFit(too_flat);
    Round<N> round;
    for (std::size_t i = 0; i < N; ++i) round.centre[i] = (*solution)[i] / 2.0;
    round.radius = std::sqrt((*solution)[N] + dot(round.centre, round.centre));
    return round;
}

// The linear equations for the step from here.
template <std::size_t N>
NormalEquations<N + 1> step_equations(const Round<N>& round, const std::vector<Point<N>>& points) {
    NormalEquations<N + 1> equations;
    for (const Point<N>& point : points) {
        Point<N> outwards = minus(point, round.centre);
        const double distance = length(outwards);
        if (distance == 0.0) continue;
        for (double& number : outwards) number /= distance;
        equations.add(row_of<N>(outwards), distance - round.radius);
    }
    return equations;
}

template <std::size_t N>
double squares(const Round<N>& round, const std::vector<Point<N>>& points) {
    double sum = 0.0;
    for (const Point<N>& point : points) {
        const double deviation = length(minus(point, round.centre)) - round.radius;
        sum += deviation * deviation;
    }
    return sum;
}

template <std::size_t N>
Round<N> moved(Round<N> round, const std::array<double, N + 1>& step, double part) {
    for (std::size_t i = 0; i < N; ++i) round.centre[i] += part * step[i];
    round.radius += part * step[N];
    return round;
}

// Goes the step, or as much of it as makes the sum smaller; false where nothing does, or it no longer counts.
template <std::size_t N>
bool improve(Round<N>& round, const std::vector<Point<N>>& points) {
    const auto step = solve(step_equations(round, points));
    if (!step) throw NoFit(too_flat);
    const double before = squares(round, points);
    for (double part = 1.0; part > 1e-9; part /= 2.0) {
        const Round<N> there = moved(round, *step, part);
        if (!(squares(there, points) < before)) continue;
        const double way = part * length<N + 1>(*step);
        round = there;
        return way > 1e-14 * round.radius;
    }
    return false;
}

// What the radius' own variance is for scatter of variance 1: the last element of the inverse.
template <std::size_t N>
double radius_factor(const Round<N>& round, const std::vector<Point<N>>& points) {
    NormalEquations<N + 1> equations = step_equations(round, points);
    for (std::size_t i = 0; i <= N; ++i) equations.sums[i][N + 1] = i == N ? 1.0 : 0.0;
    const auto solution = solve(equations);
    if (!solution || !((*solution)[N] > 0.0)) throw NoFit(too_flat);
    return (*solution)[N];
}

template <std::size_t N>
double radius_deviation(const Round<N>& round, const std::vector<Point<N>>& points) {
    const double spare = static_cast<double>(points.size()) - static_cast<double>(N + 1);
    if (spare < 1.0) return 0.0;
    return std::sqrt(squares(round, points) / spare * radius_factor(round, points));
}

template <std::size_t N>
PrincipalAxes<N> checked_axes(const std::vector<Point<N>>& points) {
    if (points.size() < N + 1)
        throw NoFit(N == 2 ? "a circle needs at least three points" : "a sphere needs at least four points");
    PrincipalAxes<N> axes = principal_axes(points);
    if (axes.spread[0] <= axes.noise) throw NoFit("all points lie in one place");
    if (axes.spread[1] <= axes.noise) throw NoFit("the points lie on one line");
    if (axes.spread[N - 1] <= axes.noise) throw NoFit("the points lie in one plane");
    return axes;
}

}  // namespace

template <std::size_t N>
RoundFit<N> fit_round(const std::vector<Point<N>>& points) {
    const PrincipalAxes<N> axes = checked_axes(points);
    const std::vector<Point<N>> near = normalized(points, axes);
    Round<N> round = algebraic_fit(near);
    constexpr int most_steps = 200;
    for (int step = 0; step < most_steps && improve(round, near); ++step) {
    }
    const double uncertain = radius_deviation(round, near);
    if (!(uncertain < round.radius)) throw NoFit(too_flat);
    const double unit = axes.spread[0];
    RoundFit<N> fit{plus(axes.centre, round.centre, unit), round.radius * unit, uncertain * unit, {}};
    fit.deviations.reserve(points.size());
    for (const Point<N>& point : near)
        fit.deviations.push_back((length(minus(point, round.centre)) - round.radius) * unit);
    return fit;
}

template RoundFit<2> fit_round(const std::vector<Point<2>>&);
template RoundFit<3> fit_round(const std::vector<Point<3>>&);

}  // namespace zxhost
