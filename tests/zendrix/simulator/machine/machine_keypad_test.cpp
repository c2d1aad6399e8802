// The keypad, spindles that turn by themselves, wobble, and what somebody does at the machine.
#include <gtest/gtest.h>

#include <limits>

#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::by;
using rig::no_limit;
using rig::Recorder;
using rig::refusal;
using rig::to;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
using Names = Machine::Names;

// The plain machine with x, z and c on the keypad, spindles c and d, and an axis w that is moved by hand.
MachineDescription machine_with_keypad() {
    return parse_machine(
        "[machine]\ninitialized=1\n[motion]\nspeed=10\nscanspeed=10\n[probe]\n"
        "[axis x]\nkind=linear\nlower=-100\nupper=100\nspeed=100\nacceleration=10\nscan=1\nkeypad=1\n"
        "[axis y]\nkind=linear\nlower=-100\nupper=100\nspeed=100\nacceleration=10\nscan=1\n"
        "[axis z]\nkind=linear\nlower=-100\nupper=100\nspeed=100\nacceleration=10\nscan=1\nkeypad=1\n"
        "[axis c]\nkind=spindle\nspeed=90\nacceleration=90\nspin=1\nspin_speed=36\nkeypad=1\nscan=1\n"
        "[axis d]\nkind=spindle\nspeed=90\nacceleration=90\nspin=1\nspinning=-10\n"
        "[axis h]\nkind=inactive\nkeypad=1\n"
        "[axis w]\nkind=linear\nlower=0\nupper=50\n"
        "[workpiece]\nkind=ring\nradius=20\n",
        "keypad.ini");
}

struct KeypadTest : testing::Test {
    void pass(double seconds) { machine.advance(now += seconds, no_limit); }
    void switch_keypad(bool on, const Names& names) {
        machine.switch_keypad(on, names);
        pass(0.0);
    }
    Names on_hand() const {
        Names names;
        for (const Axis& axis : machine.axes()) {
            if (axis.is_on_hand) names.push_back(axis.is.name);
        }
        return names;
    }
    double spin(const std::string& name) const {
        for (const Axis& axis : machine.axes()) {
            if (axis.is.name == name) return axis.spin;
        }
        return nan;
    }

    Recorder said;
    Machine machine{machine_with_keypad(), said};
    double now = 0.0;
};

TEST_F(KeypadTest, TheEventTellsWhatBecameOfTheKeypad) {
    machine.switch_keypad(true, {"x"});
    EXPECT_TRUE(said.events.empty());  // it is an action: accepted first
    EXPECT_TRUE(machine.is_busy());
    pass(0.0);
    EXPECT_EQ(on_hand(), Names{"x"});
    switch_keypad(true, {"x", "z"});
    EXPECT_EQ(on_hand(), (Names{"x", "z"}));
    switch_keypad(false, {"x"});
    switch_keypad(false, {"z"});
    EXPECT_EQ(said.events, (std::vector{Event::keypad_enabled, Event::keypad_changed, Event::keypad_changed,
                                        Event::keypad_disabled}));
    EXPECT_TRUE(said.warnings.empty());
    switch_keypad(false, {"z"});
    EXPECT_EQ(said.events.size(), 4u);
    EXPECT_EQ(said.warnings, std::vector{Warning::no_effect});
    EXPECT_EQ(said.ends.size(), 5u);
}

TEST_F(KeypadTest, NoNamesMeanAll) {
    switch_keypad(true, {});
    EXPECT_EQ(on_hand(), (Names{"c", "x", "z"}));
    switch_keypad(false, {});
    EXPECT_EQ(on_hand(), Names{});
    EXPECT_EQ(said.events, (std::vector{Event::keypad_enabled, Event::keypad_disabled}));
}

TEST_F(KeypadTest, WhatCannotBeEnabled) {
    EXPECT_EQ(refusal([&] { machine.switch_keypad(true, {"y"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.switch_keypad(true, {"h"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.switch_keypad(true, {"q"}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.switch_keypad(true, {"x", "x"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.switch_keypad(true, {"x", "y"}); }), Error::invalid_axis);
    EXPECT_EQ(on_hand(), Names{});
    machine.start_spin({{"c", false}});
    EXPECT_EQ(refusal([&] { machine.switch_keypad(true, {"c"}); }), Error::wrong_state);
    machine.move({to("y", 1.0)});
    EXPECT_EQ(refusal([&] { machine.switch_keypad(true, {"x"}); }), Error::wrong_state);
}

TEST_F(KeypadTest, WhatIsInTheOperatorsHandMovesForNobodyElse) {
    switch_keypad(true, {"x", "c"});
    EXPECT_EQ(refusal([&] { machine.move({to("x", 1.0)}); }), Error::keypad_enabled);
    EXPECT_EQ(refusal([&] { machine.home(); }), Error::keypad_enabled);
    EXPECT_EQ(refusal([&] { machine.scan({to("z", 1.0)}); }), Error::keypad_enabled);  // the probe is on x
    EXPECT_EQ(refusal([&] { machine.start_spin({{"c", false}}); }), Error::keypad_enabled);
    EXPECT_EQ(refusal([&] { machine.move({to("z", 1.0)}); }), Error::none);
    pass(100.0);
    switch_keypad(false, {});
    EXPECT_EQ(refusal([&] { machine.move({to("x", 1.0)}); }), Error::none);
}

TEST_F(KeypadTest, KeysEnableAndDisableTheAxesThatTheyName) {
    machine.press_key("key-enable x z");
    EXPECT_EQ(on_hand(), (Names{"x", "z"}));
    machine.press_key("key-enable x/z/hb");
    EXPECT_EQ(said.events, std::vector{Event::keypad_enabled});  // nothing new
    machine.press_key("key-disable z/c");
    EXPECT_EQ(on_hand(), Names{"x"});
    machine.press_key("key-enable");
    EXPECT_EQ(on_hand(), (Names{"c", "x", "z"}));
    machine.press_key("key-disable");
    EXPECT_EQ(on_hand(), Names{});
    said = {};
    for (const char* key :
         {"key-start", "key-zero x", "key-movezero x+", "key-enable y", "key-enable x+", ""}) {
        machine.press_key(key);
    }
    EXPECT_TRUE(said.events.empty());
    machine.move({to("x", 1.0)});
    machine.press_key("key-enable x z");  // not in the middle of a motion
    EXPECT_EQ(on_hand(), Names{});
}

TEST_F(KeypadTest, SpindlesTurnByThemselves) {
    EXPECT_EQ(spin("d"), -10.0);
    machine.start_spin({{"c", false}});
    pass(2.0);
    EXPECT_NEAR(machine.value("c"), 72.0, 1e-9);
    EXPECT_NEAR(machine.value("d"), -20.0, 1e-9);
    machine.start_spin({{"c", true}, {"d", false}});
    pass(1.0);
    EXPECT_NEAR(machine.value("c"), 36.0, 1e-9);
    EXPECT_NEAR(machine.value("d"), -10.0, 1e-9);
    machine.stop_spin({"c"});
    pass(10.0);
    EXPECT_NEAR(machine.value("c"), 36.0, 1e-9);
    EXPECT_EQ(said.events, (std::vector{Event::spin_changed, Event::spin_changed, Event::spin_changed}));
    said = {};
    machine.stop_spin({"c"});
    machine.start_spin({{"d", false}});  // as it turns already
    EXPECT_TRUE(said.events.empty());
    machine.stop_spin({});
    machine.stop_spin({});
    EXPECT_EQ(said.events, std::vector{Event::spin_changed});
}

TEST_F(KeypadTest, WhatCannotSpin) {
    EXPECT_EQ(refusal([&] { machine.start_spin({}); }), Error::no_axis_specified);
    EXPECT_EQ(refusal([&] { machine.start_spin({{"x", false}}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.start_spin({{"", true}}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.start_spin({{"c", false}, {"c", true}}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.start_spin({{"c", false}, {"q", true}}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.stop_spin({"x"}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.stop_spin({"q"}); }), Error::unknown_axis);
    EXPECT_EQ(spin("c"), 0.0);
    machine.move({to("x", 50.0)});
    EXPECT_EQ(refusal([&] { machine.start_spin({{"c", false}}); }), Error::wrong_state);
    EXPECT_EQ(refusal([&] { machine.stop_spin({}); }), Error::wrong_state);
    EXPECT_EQ(spin("d"), -10.0);
    machine.emergency();
    EXPECT_EQ(spin("d"), 0.0);
    EXPECT_EQ(refusal([&] { machine.start_spin({{"c", false}}); }), Error::emergency);
}

TEST_F(KeypadTest, WhatSpinsTakesPartInNoMotion) {
    machine.start_spin({{"c", false}});
    EXPECT_EQ(refusal([&] { machine.move({to("c", 10.0)}); }), Error::wrong_state);
    machine.move({to("x", 20.0)});  // 3 s
    pass(1.0);
    EXPECT_NEAR(machine.value("c"), 36.0, 1e-9);
    EXPECT_NEAR(machine.value("x"), 5.0, 1e-9);
    pass(9.0);
    EXPECT_NEAR(machine.value("c"), 360.0, 1e-9);
    EXPECT_EQ(machine.value("x"), 20.0);
    machine.home();
    pass(10.0);
    EXPECT_NEAR(machine.value("c"), 720.0, 1e-9);
    EXPECT_NEAR(machine.value("x"), 0.0, 1e-9);
}

TEST_F(KeypadTest, AScanOfATurningPartSeesItTurn) {
    machine.move({to("x", 20.0)});
    pass(10.0);
    machine.start_spin({{"c", false}});
    machine.select_data({"c", "time"});
    const double before = machine.value("c");
    machine.scan({to("z", 2.0)});
    pass(100.0);
    ASSERT_GT(said.points.size(), 2u);
    for (const auto& point : said.points) EXPECT_NEAR(point[0], before + 36.0 * point[1], 1e-6);
    // A scan that waits for its reader doesn't hold the spindle.
    machine.scan({to("z", 0.0)});
    machine.advance(now, 1);
    const double held = machine.value("c");
    machine.advance(now += 1.0, 0);
    EXPECT_NEAR(machine.value("c"), held + 36.0, 1e-9);
}

TEST_F(KeypadTest, ContactIsLostWhenTheProbeLeaves) {
    machine.move({to("x", 20.0)});
    pass(10.0);
    machine.scan_point({to("z", 1.0)});
    pass(10.0);
    said = {};
    machine.move({to("x", 30.0)});
    pass(10.0);
    EXPECT_EQ(said.events,
              (std::vector{Event::movement_begin, Event::probe_contact_lost, Event::movement_end}));
    said = {};
    machine.move({to("x", 31.0)});
    pass(10.0);
    EXPECT_EQ(said.events, (std::vector{Event::movement_begin, Event::movement_end}));
}

TEST_F(KeypadTest, AnAxisGoesOutOfUse) {
    switch_keypad(true, {"c"});
    said = {};
    machine.put_out_of_use("c");
    EXPECT_EQ(said.events, (std::vector{Event::keypad_disabled, Event::capabilities_changed}));
    EXPECT_FALSE(machine.can_move({"c"}));
    EXPECT_EQ(refusal([&] { machine.move({to("c", 1.0)}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.start_spin({{"c", false}}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.put_out_of_use("c"); }), Error::invalid_axis);
    said = {};
    machine.put_out_of_use("d");
    EXPECT_EQ(said.events, (std::vector{Event::spin_changed, Event::capabilities_changed}));
    machine.put_into_use("c");
    EXPECT_TRUE(machine.can_move({"c"}));
    EXPECT_EQ(refusal([&] { machine.put_into_use("c"); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.put_into_use("h"); }), Error::invalid_axis);  // never was
    EXPECT_EQ(refusal([&] { machine.put_out_of_use("q"); }), Error::unknown_axis);
    machine.move({to("x", 1.0)});
    EXPECT_EQ(refusal([&] { machine.put_out_of_use("y"); }), Error::wrong_state);
}

TEST_F(KeypadTest, WordsComeAndGo) {
    machine.withdraw("movehome");
    machine.withdraw("movehome");
    EXPECT_TRUE(machine.withdrawn().contains("movehome"));
    EXPECT_EQ(said.events, std::vector{Event::capabilities_changed});
    machine.restore("movehome");
    machine.restore("movehome");
    EXPECT_TRUE(machine.withdrawn().empty());
    EXPECT_EQ(said.events.size(), 2u);
}

TEST_F(KeypadTest, AHandMovesWhatHasNoDriveOrIsEnabled) {
    machine.place({to("w", 12.5)});
    EXPECT_EQ(machine.value("w"), 12.5);
    EXPECT_EQ(refusal([&] { machine.place({to("w", 51.0)}); }), Error::argument_out_of_range);
    EXPECT_EQ(refusal([&] { machine.place({to("w", nan)}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { machine.place({by("w", 1.0)}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { machine.place({to("w", 1.0), to("x", 1.0)}); }), Error::wrong_state);
    EXPECT_EQ(refusal([&] { machine.place({}); }), Error::no_axis_specified);
    EXPECT_EQ(machine.value("w"), 12.5);
    switch_keypad(true, {"x"});
    machine.place({to("w", 1.0), to("x", 1.0)});
    EXPECT_EQ(machine.value("x"), 1.0);
}

TEST_F(KeypadTest, WobbleIsKept) {
    EXPECT_FALSE(machine.wobble());
    machine.set_wobble({1, 2, 3, 4, 5, 6});
    EXPECT_EQ(machine.wobble(), (Machine::Wobble{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(refusal([&] { machine.set_wobble({1, 2, nan, 4, 5, 6}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { machine.set_wobble({-std::numeric_limits<double>::infinity()}); }),
              Error::invalid_argument);
    EXPECT_EQ(machine.wobble(), (Machine::Wobble{1, 2, 3, 4, 5, 6}));
}

}  // namespace
}  // namespace zendrix::sim
