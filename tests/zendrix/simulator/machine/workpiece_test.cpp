#include "machine/workpiece.h"

#include <gtest/gtest.h>

#include "machine/noise.h"

namespace zendrix::sim {
namespace {

using Kind = WorkpieceDescription::Kind;

Workpiece::View look(const WorkpieceDescription& description, const Vector3& point, double turn = 0.0) {
    return Workpiece(description).look(point, turn);
}

TEST(Workpiece, RingIsSeenAlongItsRadius) {
    WorkpieceDescription ring;
    ring.kind = Kind::ring;
    ring.center = {10.0, -5.0, 0.0};
    ring.radius = 20.0;
    const Workpiece::View view = look(ring, {10.0, 16.0, 77.0});
    EXPECT_FALSE(view.is_beside);
    EXPECT_NEAR(view.height, 1.0, 1e-12);
    EXPECT_NEAR(view.normal.y, 1.0, 1e-12);
    EXPECT_NEAR(look(ring, {13.0, -5.0, 0.0}).height, -17.0, 1e-12);
    EXPECT_TRUE(look(ring, {10.0, -5.0, 0.0}).is_beside);  // the centre sees no side
}

TEST(Workpiece, HarmonicsPeakAtTheirPhase) {
    WorkpieceDescription ring;
    ring.kind = Kind::ring;
    ring.radius = 20.0;
    ring.harmonics = {{3, 0.5, 40.0}};
    const auto surface = [&](double angle) {
        return 20.0 - look(ring, rotated({20.0, 0.0, 0.0}, angle)).height;
    };
    EXPECT_NEAR(surface(40.0), 20.5, 1e-9);
    EXPECT_NEAR(surface(160.0), 20.5, 1e-9);
    EXPECT_NEAR(surface(100.0), 19.5, 1e-9);
    EXPECT_NEAR(surface(70.0), 20.0, 1e-9);
}

TEST(Workpiece, TurnsWithItsSpindle) {
    WorkpieceDescription ring;
    ring.kind = Kind::ring;
    ring.center = {5.0, 0.0, 0.0};
    ring.radius = 20.0;
    EXPECT_NEAR(look(ring, {25.0, 0.0, 0.0}, 0.0).height, 0.0, 1e-9);
    EXPECT_NEAR(look(ring, {15.0, 0.0, 0.0}, 180.0).height, 0.0, 1e-9);
    const Workpiece::View view = look(ring, {0.0, 25.0, 0.0}, 90.0);
    EXPECT_NEAR(view.height, 0.0, 1e-9);
    EXPECT_NEAR(view.normal.y, 1.0, 1e-9);
}

TEST(Workpiece, SphereAllRound) {
    WorkpieceDescription sphere;
    sphere.kind = Kind::sphere;
    sphere.center = {1.0, 2.0, 3.0};
    sphere.radius = 5.0;
    const Workpiece::View view = look(sphere, {1.0, 2.0, 9.5});
    EXPECT_NEAR(view.height, 1.5, 1e-12);
    EXPECT_NEAR(view.normal.z, 1.0, 1e-12);
}

TEST(Workpiece, PlaneAlongItsNormal) {
    WorkpieceDescription plane;
    plane.kind = Kind::plane;
    plane.center = {0.0, 0.0, 10.0};
    plane.normal = {0.0, 3.0, 3.0};
    plane.wavelength = 8.0;
    plane.harmonics = {{1, 0.25, 0.0}};
    const double root = std::sqrt(0.5);
    EXPECT_NEAR(look(plane, {0.0, 0.0, 12.0}).height, 2.0 * root - 0.25, 1e-9);
    EXPECT_NEAR(look(plane, {4.0, 0.0, 12.0}).height, 2.0 * root + 0.25, 1e-9);  // half a wave along x
    EXPECT_NEAR(look(plane, {0.0, 0.0, 12.0}).normal.y, root, 1e-12);
}

TEST(Workpiece, CylinderEndsAtItsHeight) {
    WorkpieceDescription cylinder;
    cylinder.kind = Kind::cylinder;
    cylinder.radius = 10.0;
    cylinder.height = 30.0;
    EXPECT_FALSE(look(cylinder, {10.0, 0.0, 29.9}).is_beside);
    EXPECT_TRUE(look(cylinder, {10.0, 0.0, 30.1}).is_beside);
    EXPECT_NEAR(look(cylinder, {10.5, 0.0, -29.9}).height, 0.5, 1e-12);
}

TEST(Workpiece, ConeWidensUpwards) {
    WorkpieceDescription cone;
    cone.kind = Kind::cone;
    cone.radius = 10.0;
    cone.taper = 30.0;
    const double widening = std::tan(radians(30.0));
    EXPECT_NEAR(look(cone, {10.0, 0.0, 0.0}).height, 0.0, 1e-9);
    EXPECT_NEAR(look(cone, {10.0 + 5.0 * widening, 0.0, 5.0}).height, 0.0, 1e-9);
    const Workpiece::View view = look(cone, {0.0, 12.0, 0.0});
    EXPECT_NEAR(view.height, 2.0 * std::cos(radians(30.0)), 1e-9);
    EXPECT_NEAR(view.normal.z, -0.5, 1e-9);
    EXPECT_NEAR(length(view.normal), 1.0, 1e-12);
}

TEST(Workpiece, WithoutAPartThereIsNothingToTouch) { EXPECT_TRUE(look({}, {1.0, 2.0, 3.0}).is_beside); }

TEST(Noise, IsGaussianAndFollowsItsSeed) {
    Noise a(7);
    Noise b(7);
    Noise other(8);
    constexpr int count = 200000;
    double sum = 0.0;
    double squares = 0.0;
    int beyond = 0;
    int differing = 0;
    for (int i = 0; i < count; ++i) {
        const double value = a.next();
        ASSERT_EQ(value, b.next());
        differing += value != other.next() ? 1 : 0;
        sum += value;
        squares += value * value;
        beyond += std::abs(value) > 1.96 ? 1 : 0;
    }
    EXPECT_NEAR(sum / count, 0.0, 0.01);
    EXPECT_NEAR(squares / count, 1.0, 0.01);
    EXPECT_NEAR(static_cast<double>(beyond) / count, 0.05, 0.003);
    EXPECT_GT(differing, count - 10);
}

}  // namespace
}  // namespace zendrix::sim
