#include "ring_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace zxhost {
namespace {

struct Circle {
    PlanePoint centre;
    double radius = 0.0;
};

using Row = std::array<double, 4>;  // three coefficients and the right side
using Equations = std::array<Row, 3>;

void add_equation(Equations& normal, const std::array<double, 3>& a, double b) {
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t k = 0; k < 3; ++k) normal[i][k] += a[i] * a[k];
        normal[i][3] += a[i] * b;
    }
}

// Gauss-Jordan with pivoting; nothing if the equations don't determine a solution.
std::optional<std::array<double, 3>> solve(Equations m) {
    const double scale = std::max({m[0][0], m[1][1], m[2][2]});
    for (std::size_t column = 0; column < 3; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < 3; ++row)
            if (std::abs(m[row][column]) > std::abs(m[pivot][column])) pivot = row;
        if (!(std::abs(m[pivot][column]) > 1e-12 * scale)) return std::nullopt;
        std::swap(m[column], m[pivot]);
        for (std::size_t row = 0; row < 3; ++row) {
            if (row == column) continue;
            const double factor = m[row][column] / m[column][column];
            for (std::size_t k = column; k < 4; ++k) m[row][k] -= factor * m[column][k];
        }
    }
    return std::array{m[0][3] / m[0][0], m[1][3] / m[1][1], m[2][3] / m[2][2]};
}

PlanePoint mean_of(const std::vector<PlanePoint>& points) {
    PlanePoint mean;
    for (const PlanePoint& point : points) {
        mean.x += point.x;
        mean.y += point.y;
    }
    const auto count = static_cast<double>(points.size());
    return {mean.x / count, mean.y / count};
}

double size_of(const std::vector<PlanePoint>& points, PlanePoint about) {
    double size = 0.0;
    for (const PlanePoint& point : points)
        size = std::max({size, std::abs(point.x - about.x), std::abs(point.y - about.y)});
    return size;
}

// Kasa's circle: the linear fit of x^2 + y^2 + Dx + Ey + F = 0, about the mean and in units of the ring.
std::optional<Circle> algebraic_circle(const std::vector<PlanePoint>& points) {
    const PlanePoint mean = mean_of(points);
    const double size = size_of(points, mean);
    if (!(size > 0.0) || !std::isfinite(size)) return std::nullopt;
    Equations normal{};
    for (const PlanePoint& point : points) {
        const double x = (point.x - mean.x) / size;
        const double y = (point.y - mean.y) / size;
        add_equation(normal, {x, y, 1.0}, x * x + y * y);
    }
    const auto solution = solve(normal);
    if (!solution) return std::nullopt;
    const double x = (*solution)[0] / 2.0;
    const double y = (*solution)[1] / 2.0;
    const double radius = std::sqrt((*solution)[2] + x * x + y * y);
    return Circle{{mean.x + x * size, mean.y + y * size}, radius * size};
}

// One step of Gauss-Newton on the distances; how far the circle moved, or nothing at a dead end.
std::optional<double> improve(Circle& circle, const std::vector<PlanePoint>& points) {
    Equations normal{};
    for (const PlanePoint& point : points) {
        const double dx = point.x - circle.centre.x;
        const double dy = point.y - circle.centre.y;
        const double distance = std::hypot(dx, dy);
        if (distance == 0.0) continue;
        add_equation(normal, {dx / distance, dy / distance, 1.0}, distance - circle.radius);
    }
    const auto step = solve(normal);
    if (!step) return std::nullopt;
    circle.centre.x += (*step)[0];
    circle.centre.y += (*step)[1];
    circle.radius += (*step)[2];
    return std::abs((*step)[0]) + std::abs((*step)[1]) + std::abs((*step)[2]);
}

RingFit with_deviations(const Circle& circle, const std::vector<PlanePoint>& points) {
    RingFit fit{circle.centre, circle.radius, {}, 0.0, 0.0};
    double squares = 0.0;
    for (const PlanePoint& point : points) {
        const double distance = std::hypot(point.x - circle.centre.x, point.y - circle.centre.y);
        fit.deviations.push_back(distance - circle.radius);
        squares += fit.deviations.back() * fit.deviations.back();
    }
    const auto [low, high] = std::minmax_element(fit.deviations.begin(), fit.deviations.end());
    fit.peak_to_valley = *high - *low;
    fit.rms = std::sqrt(squares / static_cast<double>(points.size()));
    return fit;
}

}  // namespace

std::optional<RingFit> fit_ring(const std::vector<PlanePoint>& points) {
    if (points.size() < 3) return std::nullopt;
    auto circle = algebraic_circle(points);
    if (!circle) return std::nullopt;
    constexpr int most_steps = 50;
    for (int step = 0; step < most_steps; ++step) {
        const auto moved = improve(*circle, points);
        if (!moved) return std::nullopt;
        if (*moved < 1e-13 * circle->radius) break;
    }
    if (!std::isfinite(circle->radius) || !std::isfinite(circle->centre.x)) return std::nullopt;
    return with_deviations(*circle, points);
}

}  // namespace zxhost
