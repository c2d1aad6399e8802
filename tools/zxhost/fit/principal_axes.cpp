#include "principal_axes.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace zxhost {
namespace {

template <std::size_t N>
struct Columns {
    std::array<std::vector<double>, N> data;
    std::array<Point<N>, N> directions{};
};

double product(const std::vector<double>& a, const std::vector<double>& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

template <class Values>
void rotate(Values& p, Values& q, double c, double s) {
    for (std::size_t i = 0; i < p.size(); ++i) {
        const double before = p[i];
        p[i] = c * before - s * q[i];
        q[i] = s * before + c * q[i];
    }
}

// Turns two columns until they are at right angles; false if they were.
template <std::size_t N>
bool orthogonalize(Columns<N>& columns, std::size_t p, std::size_t q) {
    const double alpha = product(columns.data[p], columns.data[p]);
    const double beta = product(columns.data[q], columns.data[q]);
    const double gamma = product(columns.data[p], columns.data[q]);
    if (!(std::abs(gamma) > 1e-15 * std::sqrt(alpha) * std::sqrt(beta))) return false;
    const double zeta = (beta - alpha) / (2.0 * gamma);
    const double t = std::copysign(1.0, zeta) / (std::abs(zeta) + std::hypot(1.0, zeta));
    const double c = 1.0 / std::hypot(1.0, t);
    rotate(columns.data[p], columns.data[q], c, c * t);
    rotate(columns.directions[p], columns.directions[q], c, c * t);
    return true;
}

template <std::size_t N>
void orthogonalize(Columns<N>& columns) {
    constexpr int most_sweeps = 30;  // it takes about six
    bool any = true;
    for (int sweep = 0; any && sweep < most_sweeps; ++sweep) {
        any = false;
        for (std::size_t p = 0; p + 1 < N; ++p)
            for (std::size_t q = p + 1; q < N; ++q) any = orthogonalize(columns, p, q) || any;
    }
}

// The mean and the largest distance from it along an axis; about the first point, for points far away.
template <std::size_t N>
std::pair<Point<N>, double> place_of(const std::vector<Point<N>>& points) {
    Point<N> sum{};
    for (const Point<N>& point : points) sum = plus(sum, minus(point, points.front()));
    const Point<N> mean = plus(points.front(), sum, 1.0 / static_cast<double>(points.size()));
    double size = 0.0;
    for (const Point<N>& point : points)
        for (const double along : minus(point, mean))
            size = std::isfinite(along) ? std::max(size, std::abs(along)) : along;
    return {mean, size};
}

}  // namespace

template <std::size_t N>
PrincipalAxes<N> principal_axes(const std::vector<Point<N>>& points) {
    if (points.empty()) throw NoFit("there are no points");
    for (const Point<N>& point : points)
        if (!std::all_of(point.begin(), point.end(), [](double v) { return std::isfinite(v); }))
            throw NoFit("a point has a number that isn't finite");
    const auto [mean, size] = place_of(points);
    if (!std::isfinite(size)) throw NoFit("the points lie too far from each other");
    Columns<N> columns;
    const double scale = size > 0.0 ? size : 1.0;
    for (std::size_t i = 0; i < N; ++i) {
        columns.directions[i][i] = 1.0;
        for (const Point<N>& point : points) columns.data[i].push_back((point[i] - mean[i]) / scale);
    }
    orthogonalize(columns);
    std::array<std::size_t, N> order{};
    std::iota(order.begin(), order.end(), 0u);
    const auto norm = [&](std::size_t i) { return std::sqrt(product(columns.data[i], columns.data[i])); };
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return norm(a) > norm(b); });
    PrincipalAxes<N> axes{mean, {}, {}, 0.0};
    for (std::size_t i = 0; i < N; ++i) {
        axes.directions[i] = columns.directions[order[i]];
        axes.spread[i] = norm(order[i]) / std::sqrt(static_cast<double>(points.size())) * scale;
    }
    const double farthest = length(mean) + size;
    axes.noise = std::max(1e-9 * axes.spread[0], 4.0 * std::numeric_limits<double>::epsilon() * farthest);
    return axes;
}

template PrincipalAxes<2> principal_axes(const std::vector<Point<2>>&);
template PrincipalAxes<3> principal_axes(const std::vector<Point<3>>&);

}  // namespace zxhost
