#include "ring_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

namespace {

using namespace zxhost;

std::vector<PlanePoint> ring(PlanePoint centre, double radius, int count, double sweep,
                             const std::function<double(double)>& deviation) {
    std::vector<PlanePoint> points;
    for (int i = 0; i < count; ++i) {
        const double angle = sweep * i / count;
        const double r = radius + deviation(angle);
        points.push_back({centre.x + r * std::cos(angle), centre.y + r * std::sin(angle)});
    }
    return points;
}

double round_form(double) { return 0.0; }

constexpr double full = 2.0 * std::numbers::pi;

TEST(FitRing, FindsAnExactCircle) {
    const auto fit = fit_ring(ring({10.0123, -4.9917}, 25.0045, 360, full, round_form));
    ASSERT_TRUE(fit);
    EXPECT_NEAR(fit->centre.x, 10.0123, 1e-12);
    EXPECT_NEAR(fit->centre.y, -4.9917, 1e-12);
    EXPECT_NEAR(fit->radius, 25.0045, 1e-12);
    EXPECT_NEAR(fit->peak_to_valley, 0.0, 1e-12);
    EXPECT_NEAR(fit->rms, 0.0, 1e-12);
}

TEST(FitRing, LobesMoveNeitherCentreNorRadius) {
    const auto lobes = [](double angle) {
        return 0.004 * std::cos(2 * angle) + 0.0025 * std::cos(3 * angle);
    };
    const auto fit = fit_ring(ring({3.0, 4.0}, 25.0, 3600, full, lobes));
    ASSERT_TRUE(fit);
    EXPECT_NEAR(fit->centre.x, 3.0, 1e-6);
    EXPECT_NEAR(fit->centre.y, 4.0, 1e-6);
    EXPECT_NEAR(fit->radius, 25.0, 1e-6);
    EXPECT_NEAR(fit->rms, std::hypot(0.004, 0.0025) / std::sqrt(2.0), 1e-6);
    EXPECT_NEAR(fit->deviations.front(), 0.0065, 1e-6);
}

// Gauss-Newton must leave the bias of the algebraic start on a short arc with noise behind.
TEST(FitRing, IsTheLeastSquaresCircleOnAShortArc) {
    unsigned seed = 1;
    const auto noise = [&seed](double) {
        seed = seed * 1664525u + 1013904223u;
        return (seed / 4294967296.0 - 0.5) * 0.2;
    };
    const auto points = ring({0.0, 0.0}, 10.0, 400, full / 12, noise);
    const auto fit = fit_ring(points);
    ASSERT_TRUE(fit);
    const auto squares = [&points](double x, double y, double radius) {
        double sum = 0.0;
        for (const PlanePoint& p : points) sum += std::pow(std::hypot(p.x - x, p.y - y) - radius, 2.0);
        return sum;
    };
    const double best = squares(fit->centre.x, fit->centre.y, fit->radius);
    for (const double step : {1e-3, -1e-3}) {
        EXPECT_GT(squares(fit->centre.x + step, fit->centre.y, fit->radius), best);
        EXPECT_GT(squares(fit->centre.x, fit->centre.y + step, fit->radius), best);
        EXPECT_GT(squares(fit->centre.x, fit->centre.y, fit->radius + step), best);
    }
    EXPECT_NEAR(fit->radius, 10.0, 1.0);
}

TEST(FitRing, WorksFarFromTheOriginAndForAnySize) {
    const auto far = fit_ring(ring({1e6, -1e6}, 1.0, 100, full, round_form));
    ASSERT_TRUE(far);
    EXPECT_NEAR(far->centre.x, 1e6, 1e-8);
    EXPECT_NEAR(far->radius, 1.0, 1e-8);
    const auto tiny = fit_ring(ring({0.0, 0.0}, 1e-6, 100, full, round_form));
    ASSERT_TRUE(tiny);
    EXPECT_NEAR(tiny->radius, 1e-6, 1e-15);
}

TEST(FitRing, ThreePointsGiveTheirCircle) {
    const auto fit = fit_ring({{1, 0}, {0, 1}, {-1, 0}});
    ASSERT_TRUE(fit);
    EXPECT_NEAR(fit->radius, 1.0, 1e-12);
}

TEST(FitRing, RefusesWhatHasNoCircle) {
    EXPECT_FALSE(fit_ring({}));
    EXPECT_FALSE(fit_ring({{0, 0}, {1, 1}}));
    EXPECT_FALSE(fit_ring({{0, 0}, {1, 1}, {2, 2}, {3, 3}}));
    EXPECT_FALSE(fit_ring({{2, 3}, {2, 3}, {2, 3}}));
    EXPECT_FALSE(fit_ring({{1, 0}, {0, 1}, {std::numeric_limits<double>::quiet_NaN(), 0}}));
    EXPECT_FALSE(fit_ring({{1, 0}, {0, 1}, {std::numeric_limits<double>::infinity(), 0}}));
}

}  // namespace
