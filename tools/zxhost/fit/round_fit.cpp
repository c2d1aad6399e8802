#include "round_fit.h"

#include <Eigen/Geometry>
#include <Eigen/LU>
#include <optional>

#include "principal_axes.h"

namespace zxhost {
namespace {

constexpr const char* too_flat = "the points are too flat to tell a radius from their scatter";

template <int N>
using Place = Eigen::Vector<double, N>;

template <int N>
struct Round {
    Place<N> centre;
    double radius;
};

// The centre, and the radius or what stands for it.
template <int N>
using Unknowns = Eigen::Vector<double, N + 1>;

// The sums over all rows of an overdetermined system. That they square its condition does no harm: the points
// are normalized, and the next step makes good what one loses.
template <int N>
struct NormalEquations {
    Eigen::Matrix<double, N + 1, N + 1> sums = Eigen::Matrix<double, N + 1, N + 1>::Zero();
    Unknowns<N> right = Unknowns<N>::Zero();

    void add(const Unknowns<N>& row, double value) {
        sums += row * row.transpose();
        right += row * value;
    }
};

template <int N>
Unknowns<N> solve(const NormalEquations<N>& equations) {
    Eigen::FullPivLU<Eigen::Matrix<double, N + 1, N + 1>> decomposition(equations.sums);
    decomposition.setThreshold(1e-15);
    if (!decomposition.isInvertible()) throw NoFit(too_flat);
    return decomposition.solve(equations.right);
}

// The points about their mean and in units of their spread, in which a step or a sum can be called small.
template <std::size_t N, int M = static_cast<int>(N)>
std::vector<Place<M>> normalized(const std::vector<Point<N>>& points, const PrincipalAxes<N>& axes) {
    std::vector<Place<M>> result;
    result.reserve(points.size());
    for (const Point<N>& point : points) {
        const Point<N> from_mean = minus(point, axes.centre);
        result.push_back(Eigen::Map<const Place<M>>(from_mean.data()) / axes.spread[0]);
    }
    return result;
}

template <int N>
Round<N> algebraic_fit(const std::vector<Place<N>>& points) {
    NormalEquations<N> equations;
    for (const Place<N>& point : points) equations.add(point.homogeneous(), point.squaredNorm());
    const Unknowns<N> solution = solve(equations);
    const Place<N> centre = solution.template head<N>() / 2.0;
    return {centre, std::sqrt(solution[N] + centre.squaredNorm())};
}

// The linear equations for the step from here.
template <int N>
NormalEquations<N> step_equations(const Round<N>& round, const std::vector<Place<N>>& points) {
    NormalEquations<N> equations;
    for (const Place<N>& point : points) {
        const Place<N> outwards = point - round.centre;
        const double distance = outwards.norm();
        if (distance == 0.0) continue;
        equations.add((outwards / distance).homogeneous(), distance - round.radius);
    }
    return equations;
}

template <int N>
double deviation(const Round<N>& round, const Place<N>& point) {
    return (point - round.centre).norm() - round.radius;
}

template <int N>
double squares(const Round<N>& round, const std::vector<Place<N>>& points) {
    double sum = 0.0;
    for (const Place<N>& point : points) sum += std::pow(deviation(round, point), 2);
    return sum;
}

template <int N>
Round<N> moved(const Round<N>& round, const Unknowns<N>& step) {
    return {round.centre + step.template head<N>(), round.radius + step[N]};
}

// Goes the step, or as much of it as makes the sum smaller; false where nothing does, or it no longer counts.
template <int N>
bool improve(Round<N>& round, const std::vector<Place<N>>& points) {
    const Unknowns<N> whole_step = solve(step_equations(round, points));
    const double before = squares(round, points);
    for (double part = 1.0; part > 1e-9; part /= 2.0) {
        const Unknowns<N> step = part * whole_step;
        const Round<N> there = moved(round, step);
        if (!(squares(there, points) < before)) continue;
        round = there;
        return step.norm() > 1e-14 * round.radius;
    }
    return false;
}

// The last digits, where the sum no longer tells which of two is better: small steps, as long as they get
// smaller.
template <int N>
void refine(Round<N>& round, const std::vector<Place<N>>& points) {
    double last = 1e-6 * round.radius;
    for (;;) {
        const Unknowns<N> step = solve(step_equations(round, points));
        if (!(step.norm() < last / 2.0)) return;
        last = step.norm();
        round = moved(round, step);
    }
}

// What the radius' own variance is for scatter of variance 1: the last element of the inverse.
template <int N>
double radius_factor(const Round<N>& round, const std::vector<Place<N>>& points) {
    NormalEquations<N> equations = step_equations(round, points);
    equations.right = Unknowns<N>::Unit(N);
    const double factor = solve(equations)[N];
    if (!(factor > 0.0)) throw NoFit(too_flat);
    return factor;
}

template <int N>
double radius_deviation(const Round<N>& round, const std::vector<Place<N>>& points) {
    const double spare = static_cast<double>(points.size()) - (N + 1);
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
    const auto near = normalized(points, axes);
    auto round = algebraic_fit(near);
    constexpr int most_steps = 200;
    for (int step = 0; step < most_steps && improve(round, near); ++step) {
    }
    refine(round, near);
    const double uncertain = radius_deviation(round, near);
    if (!(uncertain < round.radius)) throw NoFit(too_flat);
    const double unit = axes.spread[0];
    RoundFit<N> fit{axes.centre, round.radius * unit, uncertain * unit, {}};
    for (std::size_t i = 0; i < N; ++i) fit.centre[i] += round.centre[static_cast<Eigen::Index>(i)] * unit;
    fit.deviations.reserve(points.size());
    for (const auto& point : near) fit.deviations.push_back(deviation(round, point) * unit);
    return fit;
}

template RoundFit<2> fit_round(const std::vector<Point<2>>&);
template RoundFit<3> fit_round(const std::vector<Point<3>>&);

}  // namespace zxhost
