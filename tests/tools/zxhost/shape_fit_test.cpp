// Fits against exact shapes, known noise, their own definition, and turned and moved copies of the points.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <numbers>
#include <random>

#include "deviations.h"
#include "flat_fit.h"
#include "principal_axes.h"
#include "round_fit.h"

namespace {

using namespace zxhost;

constexpr double full = 2.0 * std::numbers::pi;

template <std::size_t N>
using Points = std::vector<Point<N>>;

Points<2> circle(Point<2> centre, double radius, int count, double sweep) {
    Points<2> points;
    for (int i = 0; i < count; ++i) {
        const double angle = sweep * i / count;
        points.push_back({centre[0] + radius * std::cos(angle), centre[1] + radius * std::sin(angle)});
    }
    return points;
}

// On a cap that reaches down to this height, which goes from 1 (the pole) to -1, in a spiral.
Points<3> sphere(Point<3> centre, double radius, int count, double lowest) {
    Points<3> points;
    for (int i = 0; i < count; ++i) {
        const double z = 1.0 - (1.0 - lowest) * (i + 0.5) / count;
        const double across = std::sqrt(1.0 - z * z);
        points.push_back(plus(centre, {across * std::cos(2.4 * i), across * std::sin(2.4 * i), z}, radius));
    }
    return points;
}

template <std::size_t N>
Points<N> noisy(Points<N> points, double noise, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal(0.0, noise);
    for (Point<N>& point : points)
        for (double& number : point) number += normal(random);
    return points;
}

// A turn about an axis that lies askew, then a shift.
Point<3> turned(const Point<3>& p, double angle, const Point<3>& shift) {
    const Point<3> axis{2.0 / 3.0, -1.0 / 3.0, 2.0 / 3.0};
    const Point<3> across{axis[1] * p[2] - axis[2] * p[1], axis[2] * p[0] - axis[0] * p[2],
                          axis[0] * p[1] - axis[1] * p[0]};
    Point<3> result = plus(shift, p, std::cos(angle));
    result = plus(result, across, std::sin(angle));
    return plus(result, axis, dot(axis, p) * (1.0 - std::cos(angle)));
}

Point<2> turned(const Point<2>& p, double angle, const Point<2>& shift) {
    return {shift[0] + std::cos(angle) * p[0] - std::sin(angle) * p[1],
            shift[1] + std::sin(angle) * p[0] + std::cos(angle) * p[1]};
}

template <std::size_t N>
Points<N> turned(Points<N> points, double angle, const Point<N>& shift) {
    for (Point<N>& point : points) point = turned(point, angle, shift);
    return points;
}

template <std::size_t N>
void expect_near(const Point<N>& a, const Point<N>& b, double tolerance) {
    for (std::size_t i = 0; i < N; ++i) EXPECT_NEAR(a[i], b[i], tolerance) << i;
}

template <class Fit>
std::string refusal(Fit fit) {
    try {
        fit();
    } catch (const NoFit& why) {
        return why.what();
    }
    return "a fit";
}

double squares(const std::vector<double>& deviations) {
    double sum = 0.0;
    for (const double deviation : deviations) sum += deviation * deviation;
    return sum;
}

TEST(RoundFit, FindsExactCirclesAndSpheres) {
    for (const double radius : {1e-6, 1.0, 25.0045, 1e6}) {
        const auto ring = fit_round(circle({10.0123, -4.9917}, radius, 360, full));
        EXPECT_NEAR(ring.radius, radius, 1e-12 * (radius + 10));
        expect_near(ring.centre, {10.0123, -4.9917}, 1e-12 * (radius + 10));
        EXPECT_LT(summary_of(ring.deviations).peak_to_valley, 1e-12 * (radius + 10));
        const auto ball = fit_round(sphere({1, -2, 3}, radius, 500, -1.0));
        EXPECT_NEAR(ball.radius, radius, 1e-12 * (radius + 10));
        expect_near(ball.centre, {1, -2, 3}, 1e-12 * (radius + 10));
    }
}

TEST(RoundFit, FindsThemFromAPartOfThem) {
    const auto arc = fit_round(circle({10, -5}, 25, 200, full / 72));  // 5 degrees
    EXPECT_NEAR(arc.radius, 25.0, 1e-7);
    const auto cap = fit_round(sphere({10, -5, 3}, 25, 200, 0.99));  // 8 degrees from the pole
    EXPECT_NEAR(cap.radius, 25.0, 1e-7);
    expect_near(cap.centre, {10, -5, 3}, 1e-7);
}

TEST(RoundFit, AsFewPointsAsThereAreUnknownsGiveTheirShape) {
    const auto ring = fit_round(Points<2>{{1, 0}, {0, 1}, {-1, 0}});
    EXPECT_NEAR(ring.radius, 1.0, 1e-12);
    EXPECT_EQ(ring.radius_deviation, 0.0);
    const auto ball = fit_round(Points<3>{{1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}});
    EXPECT_NEAR(ball.radius, 1.0, 1e-12);
}

// The scatter comes back as rms, and the radius errs as its own deviation says.
TEST(RoundFit, KnownNoiseComesBack) {
    constexpr double noise = 0.001;
    double errors = 0.0;
    double told = 0.0;
    constexpr int runs = 200;
    for (unsigned run = 0; run < runs; ++run) {
        const auto fit = fit_round(noisy(circle({1, 2}, 10, 200, full / 4), noise, run));
        EXPECT_NEAR(summary_of(fit.deviations).rms, noise, 0.3 * noise);
        errors += (fit.radius - 10.0) * (fit.radius - 10.0) / runs;
        told += fit.radius_deviation / runs;
    }
    EXPECT_NEAR(std::sqrt(errors) / told, 1.0, 0.15);
    const auto ball = fit_round(noisy(sphere({1, 2, 3}, 10, 2000, 0.0), noise, 7));
    EXPECT_NEAR(summary_of(ball.deviations).rms, noise, 0.05 * noise);
    EXPECT_NEAR(ball.radius, 10.0, 5 * ball.radius_deviation);
}

// No neighbour in any parameter has a smaller sum: what least squares means, also on a short and noisy arc.
template <std::size_t N>
void expect_least_squares(const Points<N>& points) {
    const auto fit = fit_round(points);
    const auto sum = [&](const Point<N>& centre, double radius) {
        double all = 0.0;
        for (const Point<N>& point : points) all += std::pow(length(minus(point, centre)) - radius, 2.0);
        return all;
    };
    for (const double step : {1e-4, -1e-4}) {
        EXPECT_GT(sum(fit.centre, fit.radius + step), squares(fit.deviations));
        for (std::size_t i = 0; i < N; ++i) {
            Point<N> beside = fit.centre;
            beside[i] += step;
            EXPECT_GT(sum(beside, fit.radius), squares(fit.deviations));
        }
    }
}

TEST(RoundFit, NoNeighbourHasASmallerSum) {
    expect_least_squares(noisy(circle({0, 0}, 10, 400, full / 12), 0.05, 1));
    expect_least_squares(noisy(circle({3, 4}, 10, 50, full), 3.0, 2));
    expect_least_squares(noisy(sphere({0, 0, 0}, 10, 400, 0.8), 0.05, 3));
}

TEST(RoundFit, TurningAndMovingThePointsTurnsAndMovesTheShape) {
    const Points<2> arc = noisy(circle({3, 4}, 10, 100, full / 3), 0.02, 5);
    const Points<3> cap = noisy(sphere({3, 4, 5}, 10, 100, 0.3), 0.02, 6);
    const auto flat = fit_round(arc);
    const auto solid = fit_round(cap);
    for (const double angle : {0.1, 1.0, 2.5, 4.0}) {
        const auto there = fit_round(turned<2>(arc, angle, {100, -200}));
        EXPECT_NEAR(there.radius, flat.radius, 1e-10);
        EXPECT_NEAR(there.radius_deviation, flat.radius_deviation, 1e-10);
        expect_near(there.centre, turned(flat.centre, angle, {100, -200}), 1e-10);
        const auto space = fit_round(turned<3>(cap, angle, {100, -200, 300}));
        EXPECT_NEAR(space.radius, solid.radius, 1e-10);
        expect_near(space.centre, turned(solid.centre, angle, {100, -200, 300}), 1e-10);
        for (std::size_t i = 0; i < cap.size(); ++i)
            EXPECT_NEAR(space.deviations[i], solid.deviations[i], 1e-10);
    }
}

TEST(RoundFit, WorksFarFromTheOrigin) {
    const auto far = fit_round(circle({1e6, -1e6}, 1.0, 100, full));
    expect_near(far.centre, {1e6, -1e6}, 1e-8);
    EXPECT_NEAR(far.radius, 1.0, 1e-8);
}

TEST(RoundFit, SaysWhyThereIsNone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto ring = [](const Points<2>& points) { return refusal([&] { fit_round(points); }); };
    const auto ball = [](const Points<3>& points) { return refusal([&] { fit_round(points); }); };
    EXPECT_EQ(ring({}), "a circle needs at least three points");
    EXPECT_EQ(ring({{0, 0}, {1, 1}}), "a circle needs at least three points");
    EXPECT_EQ(ball({{0, 0, 0}, {1, 1, 0}, {1, 0, 1}}), "a sphere needs at least four points");
    EXPECT_EQ(ring({{0, 0}, {1, 1}, {2, 2}, {3, 3}}), "the points lie on one line");
    EXPECT_EQ(ring({{2, 3}, {2, 3}, {2, 3}}), "all points lie in one place");
    EXPECT_EQ(ball({{0, 0, 0}, {1, 2, 3}, {2, 4, 6}, {4, 8, 12}}), "the points lie on one line");
    EXPECT_EQ(ball({{0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {1, 1, 1}, {3, 2, 1}}), "the points lie in one plane");
    EXPECT_EQ(ring({{1, 0}, {0, 1}, {nan, 0}}), "a point has a number that isn't finite");
    EXPECT_EQ(ring({{1, 0}, {0, 1}, {0, -1.0 / 0.0}}), "a point has a number that isn't finite");
    EXPECT_EQ(ring({{1e308, 0}, {-1e308, 1e308}, {0, -1e308}}), "the points lie too far from each other");
}

TEST(RoundFit, AStraightLineWithScatterHasNoRadius) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        Points<2> line;
        for (int i = 0; i < 300; ++i) line.push_back({0.1 * i, 0.05 * i});
        EXPECT_EQ(refusal([&] { fit_round(noisy(line, 1e-4, seed)); }),
                  "the points are too flat to tell a radius from their scatter")
            << seed;
    }
}

TEST(LineFit, FindsExactLines) {
    const auto flat = fit_line(Points<2>{{0, 1}, {3, 5}, {6, 9}});
    expect_near(flat.point, {3, 5}, 1e-12);
    expect_near(flat.direction, {0.6, 0.8}, 1e-12);
    EXPECT_NEAR(flat.along[0], -5.0, 1e-12);
    EXPECT_NEAR(summary_of(flat.deviations).peak_to_valley, 0.0, 1e-12);
    const auto space = fit_line(Points<3>{{1, 1, 1}, {0, -1, -1}});
    expect_near(space.direction, {1.0 / 3, 2.0 / 3, 2.0 / 3}, 1e-12);
}

TEST(LineFit, DeviationsAreSignedInThePlaneAndDistancesInSpace) {
    const auto flat = fit_line(Points<2>{{0, 0.1}, {10, -0.1}, {20, -0.1}, {30, 0.1}});
    EXPECT_NEAR(flat.deviations[0], 0.1, 1e-12);
    EXPECT_NEAR(flat.deviations[1], -0.1, 1e-12);
    const auto space = fit_line(Points<3>{{0, 0.1, 0}, {10, -0.1, 0}, {20, -0.1, 0}, {30, 0.1, 0}});
    for (const double deviation : space.deviations) EXPECT_NEAR(deviation, 0.1, 1e-12);
}

TEST(PlaneFit, FindsExactPlanes) {
    const auto fit = fit_plane({{0, 0, 1}, {3, 0, 1}, {0, 5, 1}, {7, 7, 1}});
    expect_near(fit.normal, {0, 0, 1}, 1e-12);
    EXPECT_NEAR(fit.point[2], 1.0, 1e-12);
    const auto steep = fit_plane({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    expect_near(steep.normal, {std::sqrt(1.0 / 3), std::sqrt(1.0 / 3), std::sqrt(1.0 / 3)}, 1e-12);
}

TEST(PlaneFit, KeepsItsNormalOnANarrowStrip) {
    Points<3> strip;
    for (int i = 0; i < 1000; ++i) strip.push_back({0.1 * i, 1e-5 * (i % 7), 0.0});
    expect_near(fit_plane(strip).normal, {0, 0, 1}, 1e-9);
}

TEST(FlatFit, KnownNoiseComesBack) {
    Points<3> face;
    Points<2> edge;
    for (int i = 0; i < 3000; ++i) {
        face.push_back({0.1 * (i % 60), 0.2 * (i / 60), 5.0});
        edge.push_back({0.01 * i, 2.0});
    }
    EXPECT_NEAR(summary_of(fit_plane(noisy(face, 0.001, 1)).deviations).rms, 0.001, 0.00005);
    EXPECT_NEAR(summary_of(fit_line(noisy(edge, 0.001, 2)).deviations).rms, 0.001, 0.00005);
}

TEST(FlatFit, TurningAndMovingThePointsTurnsAndMovesTheShape) {
    Points<3> face;
    for (int i = 0; i < 100; ++i) face.push_back({1.0 * (i % 10), 0.7 * (i / 10), 0.0});
    face = noisy(face, 0.01, 3);
    const auto here = fit_plane(face);
    const auto line = fit_line(face);
    for (const double angle : {0.1, 1.0, 2.5, 4.0}) {
        const Points<3> moved = turned<3>(face, angle, {100, -200, 300});
        const auto there = fit_plane(moved);
        EXPECT_NEAR(std::abs(dot(there.normal, turned(here.normal, angle, {}))), 1.0, 1e-12);
        EXPECT_NEAR(summary_of(there.deviations).rms, summary_of(here.deviations).rms, 1e-12);
        const auto line_there = fit_line(moved);
        EXPECT_NEAR(std::abs(dot(line_there.direction, turned(line.direction, angle, {}))), 1.0, 1e-12);
        EXPECT_NEAR(squares(line_there.deviations), squares(line.deviations), 1e-9);
    }
}

TEST(FlatFit, SaysWhyThereIsNone) {
    const auto line = [](const Points<2>& points) { return refusal([&] { fit_line(points); }); };
    const auto plane = [](const Points<3>& points) { return refusal([&] { fit_plane(points); }); };
    EXPECT_EQ(line({{1, 2}}), "a line needs at least two points");
    EXPECT_EQ(line({{1, 2}, {1, 2}, {1, 2}}), "all points lie in one place");
    EXPECT_EQ(line(circle({0, 0}, 1, 360, full)), "the points lie along no direction");
    EXPECT_EQ(plane({{1, 2, 3}, {2, 3, 4}}), "a plane needs at least three points");
    EXPECT_EQ(plane({{1, 2, 3}, {2, 4, 6}, {3, 6, 9}, {5, 10, 15}}), "the points lie on one line");
    EXPECT_EQ(plane({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}}), "all points lie in one place");
    EXPECT_EQ(plane({{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}}),
              "the points lie along no plane");
    EXPECT_EQ(plane({{1, 0, 0}, {0, 1, std::numeric_limits<double>::infinity()}, {0, 0, 0}}),
              "a point has a number that isn't finite");
}

TEST(PrincipalAxes, SmallSpreadsStandBesideLargeOnes) {
    Points<3> points;
    for (int i = -50; i <= 50; ++i) points.push_back({1000.0 * i, 1e-6 * (i % 2), 0.0});
    const auto axes = principal_axes(points);
    EXPECT_GT(axes.spread[1], 5e-7);
    EXPECT_LT(axes.spread[1], 1e-6);
    EXPECT_NEAR(std::abs(axes.directions[0][0]), 1.0, 1e-12);
}

}  // namespace
