#include <gtest/gtest.h>

#include <cmath>

#include "machine/machine.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::by;
using rig::form;
using rig::no_limit;
using rig::plain_machine;
using rig::Recorder;
using rig::refusal;
using rig::to;
using wire::TargetForm;

ArcRequest ring_arc(double radius = 20.0, double sweep = 360.0) {
    ArcRequest arc;
    arc.radius = arc.end_radius = radius;
    arc.sweep = sweep;
    return arc;
}

Recorder scan_ring(MachineDescription description, double slice = 1e6) {
    Recorder said;
    Machine machine(description, said);
    machine.scan_arc(ring_arc(), {});
    for (double now = slice; machine.is_busy(); now += slice) machine.advance(now, no_limit);
    return said;
}

TEST(Scan, CircleGivesThePartAsItIs) {
    MachineDescription description = plain_machine();
    description.workpiece.center = {0.1, -0.2, 0.0};
    description.workpiece.harmonics = {{3, 0.05, 20.0}};
    const Recorder said = scan_ring(description);
    ASSERT_EQ(said.points.size(), 127u);  // 40 pi mm in steps of about 1 mm, both ends included
    for (std::size_t i = 0; i < said.points.size(); ++i) {
        ASSERT_EQ(said.numbers[i], i + 1);
        ASSERT_EQ(said.points[i].size(), 3u);
        const double x = said.points[i][0] - 0.1;
        const double y = said.points[i][1] + 0.2;
        const double angle = std::atan2(y, x);
        // The probe looks along the part's own normal, so the point lies on the real surface.
        ASSERT_NEAR(std::hypot(x, y), 20.0 + 0.05 * std::cos(3.0 * (angle - radians(20.0))), 1e-9) << i;
        ASSERT_EQ(said.points[i][2], 0.0);
    }
    EXPECT_EQ(said.ends, std::vector{Error::none});
    EXPECT_EQ(said.events, (std::vector{Event::movement_begin, Event::probe_contact, Event::measurement_begin,
                                        Event::measurement_end, Event::movement_end}));
}

TEST(Scan, NoiseHasItsDeviationAndFollowsTheSeed) {
    MachineDescription description = plain_machine();
    description.scan_step = 0.02;
    description.workpiece.noise = 0.003;
    const Recorder said = scan_ring(description);
    double squares = 0.0;
    for (const std::vector<double>& point : said.points) {
        squares += std::pow(std::hypot(point[0], point[1]) - 20.0, 2);
    }
    EXPECT_NEAR(std::sqrt(squares / static_cast<double>(said.points.size())), 0.003, 0.0001);
    EXPECT_EQ(scan_ring(description).points, said.points);
    description.seed += 1;
    EXPECT_NE(scan_ring(description).points, said.points);
}

TEST(Scan, PointsDoNotDependOnHowTimeIsCut) {
    MachineDescription description = plain_machine();
    description.workpiece.noise = 0.001;
    const Recorder whole = scan_ring(description);
    const Recorder sliced = scan_ring(description, 0.0173);
    ASSERT_EQ(sliced.points.size(), whole.points.size());
    for (std::size_t i = 0; i < whole.points.size(); ++i) {
        for (std::size_t value = 0; value < 3; ++value) {
            ASSERT_NEAR(sliced.points[i][value], whole.points[i][value], 1e-9);
        }
    }
}

struct ScanTest : testing::Test {
    void pass(double seconds = 1e6) { machine.advance(now += seconds, no_limit); }
    void go(const Machine::Targets& targets) {
        machine.move(targets);
        pass();
    }

    Recorder said;
    Machine machine{plain_machine(), said};
    double now = 0.0;
};

TEST_F(ScanTest, ALineAlongTheSurface) {
    go({to("x", 20.0), to("z", -10.0)});
    machine.scan({to("z", 10.0), form("x", TargetForm::none)});
    pass();
    ASSERT_EQ(said.points.size(), 21u);
    EXPECT_NEAR(said.points.front()[2], -10.0, 1e-9);
    EXPECT_NEAR(said.points[7][2], -3.0, 1e-9);
    EXPECT_NEAR(said.points.back()[2], 10.0, 1e-9);
    EXPECT_NEAR(said.points[7][0], 20.0, 1e-9);
}

TEST_F(ScanTest, TurningThePartUnderAStandingProbe) {
    MachineDescription description = plain_machine();
    description.workpiece.spindle = "c";
    description.workpiece.center = {0.5, 0.0, 0.0};
    Recorder heard;
    Machine turning(description, heard);
    turning.move({to("x", 20.0)});
    turning.advance(1e6, no_limit);
    turning.select_data({"c", "x", "deflection"});
    turning.scan({to("c", 180.0)});
    turning.advance(2e6, no_limit);
    ASSERT_EQ(heard.points.size(), 181u);  // a degree apart: "scanstep" is 1
    EXPECT_NEAR(heard.points[0][1], 20.5, 1e-9);
    EXPECT_NEAR(heard.points[180][0], 180.0, 1e-9);
    EXPECT_NEAR(heard.points[180][1], 19.5, 1e-9);
    EXPECT_NEAR(heard.points[180][2], -0.5, 1e-9);
}

TEST_F(ScanTest, AConeAndAPolygonAndASinglePoint) {
    ArcRequest cone = ring_arc(19.5, 720.0);
    cone.end_radius = 20.5;
    cone.height = 10.0;
    machine.scan_arc(cone, {});
    pass();
    EXPECT_EQ(said.ends.back(), Error::none);
    EXPECT_NEAR(said.points.back()[2], 10.0, 1e-9);
    EXPECT_NEAR(std::hypot(said.points.back()[0], said.points.back()[1]), 20.0, 1e-9);

    said = {};
    const wire::Target end = form("", TargetForm::end_of_point);
    machine.scan_polygon({to("x", 20), to("y", 0), to("z", 0), end, to("z", 5), end, to("z", 2), end});
    pass();
    ASSERT_EQ(said.points.size(), 9u);  // 8 mm, nothing of the way to the first point
    EXPECT_NEAR(said.points[5][2], 5.0, 1e-9);
    EXPECT_NEAR(said.points[8][2], 2.0, 1e-9);

    said = {};
    machine.scan_point({to("x", 19.5)});
    pass();
    ASSERT_EQ(said.points.size(), 1u);
    EXPECT_NEAR(said.points[0][0], 20.0, 1e-9);
    EXPECT_EQ(machine.value("x"), 19.5);
    EXPECT_EQ(said.ends, std::vector{Error::none});
}

TEST_F(ScanTest, OutOfTheProbesRangeThereIsNoContact) {
    go({to("x", 19.5)});
    said = {};
    machine.scan({to("x", 29.5)});
    pass();
    EXPECT_EQ(said.points.size(), 2u);  // at 19.5 and 20.5; the range is 1 mm
    EXPECT_EQ(said.ends, std::vector{Error::no_contact});
    EXPECT_EQ(said.events,
              (std::vector{Event::movement_begin, Event::probe_contact, Event::measurement_begin,
                           Event::probe_contact_lost, Event::measurement_end, Event::movement_end}));
    EXPECT_GT(machine.value("x"), 21.5);  // it took a while to stop
    EXPECT_LT(machine.value("x"), 29.5);

    said = {};
    machine.scan_point({to("x", 50.0)});
    pass();
    EXPECT_TRUE(said.points.empty());
    EXPECT_EQ(said.ends, std::vector{Error::no_contact});
    EXPECT_EQ(said.events, (std::vector{Event::movement_begin, Event::movement_end}));
}

TEST_F(ScanTest, SelectionOfData) {
    machine.select_data({"deflection", "time", "c", "y"});
    go({to("x", 19.75)});
    machine.scan({to("z", 10.0)});
    pass();
    ASSERT_EQ(said.points.size(), 11u);
    EXPECT_NEAR(said.points[0][0], 0.25, 1e-9);
    EXPECT_EQ(said.points[0][1], 0.0);
    EXPECT_NEAR(said.points[10][1], 2.0, 1e-9);  // 10 mm take 2 s
    EXPECT_EQ(said.points[0].size(), 4u);
    EXPECT_EQ(refusal([&] { machine.select_data({"x", "nosuch"}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.select_data({"x", "speed"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.select_data({"x", "x"}); }), Error::invalid_axis);
    said = {};
    machine.select_data({});
    machine.scan_point({to("x", 20.0)});
    pass();
    EXPECT_EQ(said.points[0].size(), 3u);
}

TEST_F(ScanTest, OffsetsShowInThePoints) {
    go({to("x", 20.0)});
    machine.set({to("x", 0.0)});
    machine.scan_point({to("x", 0.5)});
    pass();
    EXPECT_NEAR(said.points[0][0], 0.0, 1e-9);
}

TEST_F(ScanTest, AbortEndsTheMeasurementAtOnceAndTheMotionSoon) {
    go({to("x", 20.0), to("z", -50.0)});
    said = {};
    machine.scan({to("z", 50.0)});
    pass(3.0);
    const std::size_t points = said.points.size();
    EXPECT_EQ(points, 26u);  // 25 mm
    machine.stop(Error::aborted);
    EXPECT_EQ(said.events.back(), Event::measurement_end);
    pass();
    EXPECT_EQ(said.points.size(), points);
    EXPECT_EQ(said.events.back(), Event::movement_end);
    EXPECT_EQ(said.ends, std::vector{Error::aborted});
}

// A reader that is behind holds the scan, not the points.
TEST_F(ScanTest, WaitsForItsReader) {
    go({to("x", 20.0), to("z", 0.0)});
    said = {};
    machine.scan({to("z", 50.0)});
    machine.advance(now += 2.0, 5);
    EXPECT_EQ(said.points.size(), 5u);
    const double here = machine.value("z");
    EXPECT_NEAR(here, 4.0, 1e-9);
    machine.advance(now += 100.0, 0);
    EXPECT_EQ(said.points.size(), 5u);
    EXPECT_EQ(machine.value("z"), here);
    machine.advance(now += 1000.0, no_limit);
    ASSERT_EQ(said.points.size(), 51u);
    EXPECT_NEAR(said.points[5][2], 5.0, 1e-9);
    EXPECT_EQ(said.ends, std::vector{Error::none});
}

TEST_F(ScanTest, Refusals) {
    EXPECT_EQ(refusal([&] { machine.scan({}); }), Error::no_axis_specified);
    EXPECT_EQ(refusal([&] { machine.scan({form("x", TargetForm::none)}); }), Error::missing_argument);
    EXPECT_EQ(refusal([&] { machine.scan({to("q", 1.0)}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.scan_polygon({}); }), Error::no_axis_specified);
    machine.set({to("scanstep", 0.001)});
    EXPECT_EQ(refusal([&] { machine.scan({to("x", 50.0)}); }), Error::too_many_points);
    EXPECT_FALSE(machine.is_busy());
    Machine::Targets many;
    for (int i = 0; i <= 10000; ++i) {
        many.push_back(to("x", 1.0));
        many.push_back(form("", TargetForm::end_of_point));
    }
    EXPECT_EQ(refusal([&] { machine.scan_polygon(many); }), Error::too_many_points);
    MachineDescription blind = plain_machine();
    blind.has_probe = false;
    Machine without(blind, said);
    EXPECT_FALSE(without.has_scanning());
    EXPECT_EQ(refusal([&] { without.scan({to("x", 1.0)}); }), Error::wrong_state);
}

}  // namespace
}  // namespace zendrix::sim
