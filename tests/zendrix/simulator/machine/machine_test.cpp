#include "machine/machine.h"

#include <gtest/gtest.h>

#include <limits>

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

struct MachineTest : testing::Test {
    void pass(double seconds) { machine.advance(now += seconds, no_limit); }

    Recorder said;
    Machine machine{plain_machine(), said};
    double now = 0.0;
};

TEST_F(MachineTest, MovesInTime) {
    machine.move({to("x", 20.0)});  // 1 s up to 10 mm/s, 1 s at it, 1 s down
    EXPECT_TRUE(machine.is_busy());
    EXPECT_NEAR(machine.end_time(), 3.0, 1e-9);
    pass(1.0);
    EXPECT_NEAR(machine.value("x"), 5.0, 1e-9);
    pass(1.0);
    EXPECT_NEAR(machine.value("x"), 15.0, 1e-9);
    EXPECT_TRUE(said.ends.empty());
    pass(1.0);
    EXPECT_EQ(machine.value("x"), 20.0);
    EXPECT_EQ(said.ends, std::vector{Error::none});
    EXPECT_EQ(said.events, (std::vector{Event::movement_begin, Event::movement_end}));
    EXPECT_FALSE(machine.is_busy());
}

TEST_F(MachineTest, AxesArriveTogether) {
    machine.move({to("x", 30.0), to("y", 40.0), to("c", 10.0)});
    pass(machine.end_time() / 2.0);
    EXPECT_NEAR(machine.value("x"), 15.0, 1e-9);
    EXPECT_NEAR(machine.value("y"), 20.0, 1e-9);
    EXPECT_NEAR(machine.value("c"), 5.0, 1e-9);
}

TEST_F(MachineTest, EveryFormOfTarget) {
    machine.move({to("x", 10.0)});
    pass(100.0);
    machine.move({by("x", 5.5), form("y", TargetForm::lowest), form("z", TargetForm::highest)});
    pass(100.0);
    EXPECT_NEAR(machine.value("x"), 15.5, 1e-9);
    EXPECT_EQ(machine.value("y"), -100.0);
    EXPECT_EQ(machine.value("z"), 100.0);
}

TEST_F(MachineTest, AbortSlowsDownAndEndsAborted) {
    machine.move({to("x", 100.0)});
    pass(2.0);
    machine.stop(Error::aborted);
    EXPECT_TRUE(machine.is_busy());
    EXPECT_TRUE(said.ends.empty());
    pass(0.5);
    EXPECT_TRUE(said.ends.empty());
    pass(0.5);
    EXPECT_EQ(said.ends, std::vector{Error::aborted});
    EXPECT_NEAR(machine.value("x"), 20.0, 1e-9);
    machine.stop(Error::aborted);  // nothing moves: nothing happens
    EXPECT_EQ(said.ends.size(), 1u);
}

TEST_F(MachineTest, PolygonStopsAtItsCorners) {
    const wire::Target end = form("", TargetForm::end_of_point);
    machine.move_polygon({to("x", 10.0), end, to("x", 10.0), to("y", 10.0), end, end, by("x", -10.0), end});
    pass(2.0);  // 10 mm take 2 s here
    EXPECT_NEAR(machine.value("x"), 10.0, 1e-9);
    EXPECT_NEAR(machine.value("y"), 0.0, 1e-9);
    pass(2.0);
    EXPECT_NEAR(machine.value("y"), 10.0, 1e-9);
    pass(2.0);
    EXPECT_NEAR(machine.value("x"), 0.0, 1e-9);
    EXPECT_EQ(said.ends, std::vector{Error::none});
}

TEST_F(MachineTest, ArcGoesRoundFromItsStart) {
    ArcRequest arc;
    arc.center = {10.0, 0.0, 5.0};
    arc.radius = arc.end_radius = 10.0;
    arc.start = 180.0;
    arc.sweep = -90.0;
    machine.move_arc(arc, {to("c", 45.0)});
    pass(100.0);
    EXPECT_NEAR(machine.value("x"), 10.0, 1e-9);
    EXPECT_NEAR(machine.value("y"), 10.0, 1e-9);
    EXPECT_NEAR(machine.value("z"), 5.0, 1e-9);
    EXPECT_NEAR(machine.value("c"), 45.0, 1e-9);
}

TEST_F(MachineTest, ConeClimbsWhileItsRadiusChanges) {
    ArcRequest arc;
    arc.radius = 10.0;
    arc.end_radius = 20.0;
    arc.sweep = 450.0;
    arc.height = 30.0;
    machine.move_arc(arc, {});
    pass(1000.0);
    EXPECT_NEAR(machine.value("x"), 0.0, 1e-9);
    EXPECT_NEAR(machine.value("y"), 20.0, 1e-9);
    EXPECT_NEAR(machine.value("z"), 30.0, 1e-9);
}

TEST_F(MachineTest, ContactStopsThere) {
    machine.move({to("x", 50.0)});
    pass(100.0);
    machine.move_to_contact({to("x", 0.0)});
    pass(100.0);
    EXPECT_NEAR(machine.value("x"), 20.0, 1e-6);
    EXPECT_EQ(said.ends.back(), Error::none);
    EXPECT_EQ(said.events, (std::vector{Event::movement_begin, Event::movement_end, Event::movement_begin,
                                        Event::probe_contact, Event::movement_end}));
}

TEST_F(MachineTest, WithoutContactItArrivesAndSaysSo) {
    machine.move({to("x", 50.0)});
    pass(100.0);
    machine.move_to_contact({to("x", 30.0)});
    pass(100.0);
    EXPECT_EQ(machine.value("x"), 30.0);
    EXPECT_EQ(said.ends.back(), Error::no_contact);
}

TEST_F(MachineTest, RefusedTargetsMoveNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        Machine::Targets targets;
        Error error;
    } rows[] = {
        {{}, Error::no_axis_specified},
        {{to("q", 1.0)}, Error::unknown_axis},
        {{to("", 1.0)}, Error::unknown_axis},
        {{to("speed", 1.0)}, Error::invalid_axis},
        {{to("x", 1.0), to("x", 2.0)}, Error::invalid_axis},
        {{to("x", 100.5)}, Error::argument_out_of_range},
        {{to("x", -1e308)}, Error::argument_out_of_range},
        {{by("x", 101.0)}, Error::argument_out_of_range},
        {{form("c", TargetForm::lowest)}, Error::argument_out_of_range},
        {{to("x", nan)}, Error::invalid_argument},
        {{to("x", infinity)}, Error::invalid_argument},
        {{form("x", TargetForm::none)}, Error::missing_argument},
        {{form("x", TargetForm::end_of_point)}, Error::syntax_invalid},
        {{to("y", 1.0), to("x", 1000.0)}, Error::argument_out_of_range},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(refusal([&] { machine.move(row.targets); }), row.error);
        EXPECT_FALSE(machine.is_busy());
    }
    EXPECT_TRUE(said.events.empty());
}

TEST_F(MachineTest, RefusedArcs) {
    const auto error_of = [&](auto change, Machine::Targets others = {}) {
        ArcRequest arc;
        arc.radius = arc.end_radius = 10.0;
        arc.sweep = 360.0;
        change(arc);
        return refusal([&] { machine.move_arc(arc, others); });
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(error_of([&](ArcRequest& arc) { arc.sweep = nan; }), Error::invalid_argument);
    EXPECT_EQ(error_of([](ArcRequest& arc) { arc.radius = -1.0; }), Error::argument_out_of_range);
    EXPECT_EQ(error_of([](ArcRequest& arc) { arc.radius = arc.end_radius = 0.0; }),
              Error::argument_out_of_range);
    EXPECT_EQ(error_of([](ArcRequest& arc) { arc.sweep = 1e9; }), Error::argument_out_of_range);
    EXPECT_EQ(error_of([](ArcRequest& arc) { arc.speed = -1.0; }), Error::argument_out_of_range);
    EXPECT_EQ(error_of([](ArcRequest& arc) { arc.center.z = 101.0; }), Error::argument_out_of_range);
    // Both ends lie inside the limits, the far side doesn't.
    EXPECT_EQ(error_of([](ArcRequest& arc) { arc.center.x = 95.0, arc.start = 180.0; }),
              Error::argument_out_of_range);
    EXPECT_EQ(error_of([](ArcRequest&) {}, {to("x", 1.0)}), Error::invalid_axis);
    EXPECT_EQ(error_of([](ArcRequest&) {}, {to("q", 1.0)}), Error::unknown_axis);
    EXPECT_FALSE(machine.is_busy());
    EXPECT_EQ(error_of([](ArcRequest&) {}), Error::none);
}

TEST_F(MachineTest, OneMotionAtATime) {
    machine.move({to("x", 20.0)});
    EXPECT_EQ(refusal([&] { machine.move({to("y", 1.0)}); }), Error::wrong_state);
    EXPECT_EQ(refusal([&] { machine.home(); }), Error::wrong_state);
    EXPECT_EQ(refusal([&] { machine.set({to("y", 1.0)}); }), Error::wrong_state);
    EXPECT_EQ(refusal([&] { machine.modulo({"c"}); }), Error::wrong_state);
    pass(100.0);
    EXPECT_EQ(said.ends, std::vector{Error::none});
    EXPECT_EQ(machine.value("y"), 0.0);
}

TEST_F(MachineTest, EmergencyHoldsUntilReset) {
    machine.move({to("x", 20.0)});
    pass(1.5);
    machine.emergency();
    EXPECT_EQ(said.ends, std::vector{Error::emergency});
    EXPECT_NEAR(machine.value("x"), 10.0, 1e-9);  // at once, where it was
    EXPECT_EQ(refusal([&] { machine.move({to("x", 1.0)}); }), Error::emergency);
    machine.reset();
    EXPECT_EQ(refusal([&] { machine.move({to("x", 1.0)}); }), Error::none);
}

TEST_F(MachineTest, ResetStopsAMotion) {
    machine.move({to("x", 20.0)});
    pass(1.5);
    machine.reset();
    pass(10.0);
    EXPECT_EQ(said.ends, std::vector{Error::aborted});
}

TEST_F(MachineTest, SetShiftsAnAxisAndItsLimits) {
    machine.move({to("x", 50.0)});
    pass(100.0);
    machine.set({to("x", 0.0)});
    EXPECT_EQ(machine.value("x"), 0.0);
    EXPECT_EQ(refusal([&] { machine.move({to("x", 51.0)}); }), Error::argument_out_of_range);
    machine.move({to("x", -150.0)});
    pass(1000.0);
    EXPECT_NEAR(machine.value("x"), -150.0, 1e-9);
    machine.move({form("x", TargetForm::highest)});
    pass(1000.0);
    EXPECT_NEAR(machine.value("x"), 50.0, 1e-9);
}

TEST_F(MachineTest, SetRefuses) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(refusal([&] { machine.set({}); }), Error::no_axis_specified);
    EXPECT_EQ(refusal([&] { machine.set({to("q", 1.0)}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.set({to("init", 1.0)}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.set({to("speed", 1.0), to("speed", 2.0)}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.set({by("speed", 1.0)}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { machine.set({to("speed", nan)}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { machine.set({to("speed", 0.0)}); }), Error::argument_out_of_range);
    EXPECT_EQ(refusal([&] { machine.set({to("scanstep", 1e6)}); }), Error::argument_out_of_range);
    EXPECT_EQ(refusal([&] { machine.set({to("speed", 5.0), to("x", 1e6)}); }), Error::argument_out_of_range);
    EXPECT_EQ(machine.value("speed"), 10.0);  // all or nothing
}

TEST_F(MachineTest, SpeedIsSettable) {
    machine.set({to("speed", 5.0)});
    machine.move({to("x", 10.0)});
    EXPECT_NEAR(machine.end_time(), 2.5, 1e-9);
}

TEST_F(MachineTest, ModuloBringsASpindleIntoOneTurn) {
    machine.move({to("c", -450.0)});
    pass(1000.0);
    machine.modulo({"c"});
    EXPECT_NEAR(machine.value("c"), 270.0, 1e-9);
    machine.move({to("c", 0.0)});
    pass(1000.0);
    EXPECT_NEAR(machine.value("c"), 0.0, 1e-9);
    EXPECT_EQ(refusal([&] { machine.modulo({"x"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.modulo({}); }), Error::no_axis_specified);
}

TEST_F(MachineTest, TimeNeverGoesBack) {
    machine.move({to("x", 20.0)});
    pass(2.0);
    machine.advance(1.0, no_limit);
    EXPECT_NEAR(machine.value("x"), 15.0, 1e-9);
}

// The rich machine has an axis of each kind.
struct RichMachineTest : testing::Test {
    void pass() { machine.advance(now += 10000.0, no_limit); }

    Recorder said;
    Machine machine{read_machine(MACHINES_DIR "/rich.ini"), said};
    double now = 0.0;
};

TEST_F(RichMachineTest, NothingMovesBeforeItsReferenceIsFound) {
    EXPECT_EQ(machine.value("init"), 0.0);
    EXPECT_EQ(refusal([&] { machine.move({to("x", 1.0)}); }), Error::not_initialized);
    EXPECT_EQ(refusal([&] { machine.home(); }), Error::not_initialized);
    machine.init({});
    EXPECT_EQ(machine.value("init"), 0.0);
    pass();
    EXPECT_EQ(said.ends, std::vector{Error::none});
    EXPECT_EQ(machine.value("init"), 1.0);
    EXPECT_EQ(machine.value("x"), -150.0);
    machine.move({to("x", 1.0)});
    pass();
    EXPECT_EQ(machine.value("x"), 1.0);
}

TEST_F(RichMachineTest, SingleAxesAreInitialized) {
    machine.init({"x", "c"});
    pass();
    EXPECT_EQ(machine.value("init"), 0.0);
    EXPECT_EQ(refusal([&] { machine.move({to("y", 1.0)}); }), Error::not_initialized);
    EXPECT_EQ(refusal([&] { machine.move({to("x", 1.0)}); }), Error::none);
    pass();
    EXPECT_EQ(refusal([&] { machine.init({"sw"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.init({"nosuch"}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.init({"x", "x"}); }), Error::invalid_axis);
}

TEST_F(RichMachineTest, AbortedInitFindsNothing) {
    machine.init({});
    machine.advance(0.1, no_limit);
    machine.stop(Error::aborted);
    pass();
    EXPECT_EQ(said.ends, std::vector{Error::aborted});
    EXPECT_EQ(machine.value("init"), 0.0);
}

TEST_F(RichMachineTest, AxesOfEachKind) {
    machine.init({});
    pass();
    EXPECT_EQ(refusal([&] { machine.move({to("ka", 45.0)}); }), Error::argument_out_of_range);
    EXPECT_EQ(refusal([&] { machine.move({to("ka", 180.0)}); }), Error::none);
    pass();
    EXPECT_EQ(machine.value("ka"), 180.0);
    EXPECT_EQ(refusal([&] { machine.move({to("w", 10.0)}); }), Error::invalid_axis);  // by hand only
    EXPECT_EQ(refusal([&] { machine.move({to("sw", 1.0)}); }), Error::invalid_axis);  // a switch
    EXPECT_EQ(refusal([&] { machine.move({to("hc", 0.0)}); }), Error::invalid_axis);  // inactive
    EXPECT_EQ(refusal([&] { machine.set({to("hc", 0.0)}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.set({to("sw", 2.0)}); }), Error::argument_out_of_range);
    machine.set({to("sw", 1.0), to("air", 6.5)});
    EXPECT_EQ(machine.value("sw"), 1.0);
    EXPECT_EQ(machine.value("air"), 6.5);
    machine.move({to("tailstock", 2.0), to("ha", -30.0)});
    pass();
    EXPECT_EQ(machine.value("tailstock"), 2.0);
    EXPECT_EQ(machine.value("ha"), -30.0);
}

TEST_F(RichMachineTest, WhatIsPossible) {
    EXPECT_TRUE(machine.can_move({"x", "c", "tailstock"}));
    EXPECT_FALSE(machine.can_move({"x", "w"}));
    EXPECT_TRUE(machine.can_scan({"x", "hb"}));
    EXPECT_FALSE(machine.can_scan({"x", "ha"}));
    EXPECT_TRUE(machine.can_move_to_limit({"x", "ha"}));
    EXPECT_FALSE(machine.can_move_to_limit({"c"}));
    EXPECT_EQ(refusal([&] { machine.can_move({"x", "q"}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.can_scan({}); }), Error::no_axis_specified);
    EXPECT_EQ(refusal([&] { machine.set_move_base({"w"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.set_scan_base({"ha"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.set_scan_base({"x", "y"}); }), Error::none);
}

TEST_F(RichMachineTest, HomeBringsEveryDrivenAxisHome) {
    machine.init({});
    pass();
    machine.move({to("tailstock", 1.0)});
    pass();
    machine.home();
    pass();
    EXPECT_EQ(machine.value("z"), 200.0);
    EXPECT_EQ(machine.value("x"), 0.0);
    EXPECT_EQ(machine.value("tailstock"), 0.0);
    EXPECT_EQ(machine.value("w"), 120.0);
}

}  // namespace
}  // namespace zendrix::sim
