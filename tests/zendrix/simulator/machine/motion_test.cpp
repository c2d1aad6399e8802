#include "machine/motion.h"

#include <gtest/gtest.h>

#include "rig.h"

namespace zendrix::sim {
namespace {

Axis driven(const char* name, AxisKind kind, double speed, double acceleration) {
    Axis axis;
    axis.is.name = name;
    axis.is.kind = kind;
    axis.is.speed = speed;
    axis.is.acceleration = acceleration;
    return axis;
}

// Straight axes "x" and "y", then a turning one.
std::vector<Axis> three_axes() {
    return {driven("x", AxisKind::linear, 100.0, 10.0), driven("y", AxisKind::linear, 2.0, 10.0),
            driven("c", AxisKind::spindle, 90.0, 90.0)};
}

Motion straight(std::vector<double> to, double speed) {
    Motion motion;
    motion.add({three_axes(), {0.0, 0.0, 0.0}, std::move(to), speed});
    return motion;
}

TEST(Segment, TheLongerOfLengthAndAngleCounts) {
    EXPECT_DOUBLE_EQ(Segment(three_axes(), {0, 0, 0}, {3, 4, 0}, 1.0).length(), 5.0);
    EXPECT_DOUBLE_EQ(Segment(three_axes(), {0, 0, 0}, {3, 4, 2}, 1.0).length(), 5.0);
    EXPECT_DOUBLE_EQ(Segment(three_axes(), {0, 0, 0}, {3, 4, 90}, 1.0).length(), 90.0);
    EXPECT_DOUBLE_EQ(Segment(three_axes(), {1, 1, 1}, {1, 1, 1}, 1.0).length(), 0.0);
}

TEST(Segment, TheSlowestAxisSetsThePace) {
    // y may do 2 mm/s on its 4 mm, so 5 mm along the way take 2.5 mm/s at the most.
    const Segment segment(three_axes(), {0, 0, 0}, {300, 400, 0}, 1000.0);
    const double cruise = (segment.length_at(60.0) - segment.length_at(50.0)) / 10.0;
    EXPECT_NEAR(cruise, 2.5, 1e-9);
}

TEST(Segment, AnArcStaysOnItsCircle) {
    const Arc arc{0, 1, 5.0, -3.0, 10.0, 10.0, 30.0, -90.0};
    const Segment segment(three_axes(), {arc.at(0).first, arc.at(0).second, 0},
                          {arc.at(1).first, arc.at(1).second, 0}, 5.0, arc);
    EXPECT_NEAR(segment.length(), 10.0 * pi / 2.0, 1e-9);
    std::vector<double> positions;
    for (int i = 0; i <= 100; ++i) {
        segment.positions_at(segment.length() * i / 100.0, positions);
        ASSERT_NEAR(std::hypot(positions[0] - 5.0, positions[1] + 3.0), 10.0, 1e-9);
    }
    EXPECT_NEAR(positions[0], 5.0 + 10.0 * std::cos(radians(-60.0)), 1e-9);
}

TEST(Motion, StopsOnTheWayAndStays) {
    Motion motion = straight({100.0, 0.0, 0.0}, 10.0);
    double seconds = 3.0;  // 1 s to speed up, then 2 s of 10 mm
    EXPECT_EQ(motion.advance(seconds), Motion::Reached::time);
    motion.stop();
    EXPECT_NEAR(motion.remaining(), 1.0, 1e-9);
    seconds = 10.0;
    EXPECT_EQ(motion.advance(seconds), Motion::Reached::end);
    std::vector<double> positions;
    motion.positions(positions);
    EXPECT_NEAR(positions[0], 5.0 + 20.0 + 5.0, 1e-9);
    EXPECT_NEAR(seconds, 9.0, 1e-9);
}

TEST(Motion, PointsLieEvenlyWithOneAtEachEnd) {
    Motion motion;
    Segment approach(three_axes(), {-5, 0, 0}, {0, 0, 0}, 10.0);
    Segment first(three_axes(), {0, 0, 0}, {1, 0, 0}, 10.0);
    Segment second(three_axes(), {1, 0, 0}, {3.1, 0, 0}, 10.0);
    first.is_measured = second.is_measured = true;
    motion.add(approach);
    motion.add(first);
    motion.add(second);
    motion.place_points(0.5);
    ASSERT_EQ(motion.point_count(), 7u);  // 6 intervals of 3.1 / 6
    double seconds = 100.0;
    std::vector<double> positions;
    for (int i = 0; i < 7; ++i) {
        ASSERT_EQ(motion.advance(seconds), Motion::Reached::point);
        motion.positions(positions);
        EXPECT_NEAR(positions[0], 3.1 * i / 6.0, 1e-9);
    }
    EXPECT_EQ(motion.advance(seconds), Motion::Reached::end);
}

TEST(Motion, AMeasuredStandHasOnePoint) {
    Motion motion;
    Segment here(three_axes(), {1, 2, 3}, {1, 2, 3}, 10.0);
    here.is_measured = true;
    motion.add(here);
    motion.place_points(0.5);
    EXPECT_EQ(motion.point_count(), 1u);
    double seconds = 0.0;
    EXPECT_EQ(motion.advance(seconds), Motion::Reached::point);
    EXPECT_EQ(motion.advance(seconds), Motion::Reached::end);
}

// However the time is cut into pieces, the points are the same.
TEST(Motion, PointsDependOnTheWayAlone) {
    const auto run = [](double slice) {
        Motion motion;
        Segment way(three_axes(), {0, 0, 0}, {10, 0, 0}, 3.0);
        way.is_measured = true;
        motion.add(way);
        motion.place_points(0.1);
        std::vector<double> found;
        std::vector<double> positions;
        for (;;) {
            double seconds = slice;
            Motion::Reached reached = Motion::Reached::point;
            while ((reached = motion.advance(seconds)) == Motion::Reached::point) {
                motion.positions(positions);
                found.push_back(positions[0]);
            }
            if (reached == Motion::Reached::end) return found;
        }
    };
    const std::vector<double> coarse = run(1000.0);
    const std::vector<double> fine = run(0.0137);
    ASSERT_EQ(coarse.size(), 101u);
    ASSERT_EQ(fine.size(), coarse.size());
    for (std::size_t i = 0; i < fine.size(); ++i) EXPECT_NEAR(fine[i], coarse[i], 1e-9);
}

}  // namespace
}  // namespace zendrix::sim
