// Probes, tips and probe systems: what is refused, what takes time, and what is told.
#include <gtest/gtest.h>

#include <limits>

#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::by;
using rig::form;
using rig::no_limit;
using rig::Recorder;
using rig::refusal;
using rig::to;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// Three probes, one of them with two tips, of which none is loaded; two probe systems.
MachineDescription machine_with_probes() {
    MachineDescription machine = rig::plain_machine();
    machine.probes.highest_probe = 9;
    machine.probes.highest_tip = 4;
    machine.probes.seconds = 2.0;
    machine.probes.tips = {{{1, 1}, {0, 0, -50, 3}},
                           {{2, 1}, {20, 0, -60, 2}},
                           {{2, 3}, {0, 20, -60, 2}},
                           {{7, 2}, {0, 0, -40, 18}}};
    machine.probesystems.seconds = 5.0;
    machine.probesystems.supported["A"].ids = {{1, {}}, {4, {1, 2, 3, 4, 5, 6}}};
    machine.probesystems.supported["B"].kind = 2;
    return machine;
}

struct ProbesTest : testing::Test {
    void pass(double seconds) { machine.advance(now += seconds, no_limit); }
    void load(TipId id) {
        machine.load_probe(id);
        pass(10.0);
        said = {};
    }
    ProbeStore& probes() { return machine.probes(); }

    Recorder said;
    Machine machine{machine_with_probes(), said};
    double now = 0.0;
};

TEST_F(ProbesTest, LoadingTakesItsTime) {
    machine.load_probe({7, 2});
    EXPECT_TRUE(machine.is_busy());
    EXPECT_NEAR(machine.end_time(), 2.0, 1e-9);
    pass(1.9);
    EXPECT_EQ(machine.value("probe"), 0.0);
    EXPECT_TRUE(said.events.empty());
    pass(0.2);
    EXPECT_EQ(machine.value("probe"), 7.0);
    EXPECT_EQ(machine.value("tip"), 2.0);
    EXPECT_EQ(said.events, std::vector{Event::probe_loaded});
    EXPECT_EQ(said.ends, std::vector{Error::none});
    EXPECT_TRUE(said.warnings.empty());
    EXPECT_FALSE(machine.is_busy());
}

TEST_F(ProbesTest, UnloadingLeavesNone) {
    load({7, 2});
    machine.unload_probe();
    pass(2.0);
    EXPECT_EQ(machine.value("probe"), 0.0);
    EXPECT_EQ(machine.value("tip"), 0.0);
    EXPECT_EQ(said.events, std::vector{Event::probe_unloaded});
    EXPECT_EQ(said.ends, std::vector{Error::none});
}

TEST_F(ProbesTest, AChangePutsTheOldOneDownFirst) {
    load({7, 2});
    machine.change_probe({1, 1});
    pass(3.0);
    EXPECT_EQ(said.events, std::vector{Event::probe_unloaded});
    EXPECT_FALSE(probes().is_loaded());
    pass(1.0);
    EXPECT_EQ(said.events, (std::vector{Event::probe_unloaded, Event::probe_loaded}));
    EXPECT_EQ(probes().loaded(), (TipId{1, 1}));
}

TEST_F(ProbesTest, AChangeWithNothingLoadedLoads) {
    machine.change_probe({1, 1});
    pass(2.0);
    EXPECT_EQ(said.events, std::vector{Event::probe_loaded});
}

TEST_F(ProbesTest, TipZeroIsTheFirstAndWarnsIfThereAreOthers) {
    machine.load_probe({2, 0});
    pass(2.0);
    EXPECT_EQ(probes().loaded(), (TipId{2, 1}));
    EXPECT_EQ(said.warnings, std::vector{Warning::ambiguous_tip});
    said = {};
    machine.change_probe({7, 0});
    pass(4.0);
    EXPECT_EQ(probes().loaded(), (TipId{7, 2}));
    EXPECT_TRUE(said.warnings.empty());
}

TEST_F(ProbesTest, AnAbortStopsWhereItIs) {
    load({7, 2});
    machine.change_probe({1, 1});
    pass(3.0);
    machine.stop(Error::aborted);
    EXPECT_TRUE(machine.is_busy());
    pass(0.0);
    EXPECT_EQ(said.ends, std::vector{Error::aborted});
    EXPECT_FALSE(probes().is_loaded());  // the old one was down already
    pass(10.0);
    EXPECT_EQ(said.events, std::vector{Event::probe_unloaded});
    machine.load_probe({1, 1});  // and all is well again
    pass(2.0);
    EXPECT_EQ(said.ends, (std::vector{Error::aborted, Error::none}));
}

TEST_F(ProbesTest, AnEmergencyEndsItAndForbidsTheNext) {
    machine.load_probe({1, 1});
    pass(1.0);
    machine.emergency();
    EXPECT_EQ(said.ends, std::vector{Error::emergency});
    EXPECT_TRUE(said.events.empty());
    EXPECT_EQ(refusal([&] { machine.load_probe({1, 1}); }), Error::emergency);
    EXPECT_EQ(refusal([&] { machine.load_probesystem("A", 1); }), Error::emergency);
    machine.reset();
    EXPECT_EQ(refusal([&] { machine.load_probe({1, 1}); }), Error::none);
}

TEST_F(ProbesTest, OneThingAtATime) {
    machine.load_probe({1, 1});
    const auto busy = [&](auto action) { EXPECT_EQ(refusal(action), Error::wrong_state); };
    busy([&] { machine.change_probe({7, 2}); });
    busy([&] { machine.load_probesystem("A", 1); });
    busy([&] { machine.move({to("x", 1.0)}); });
    busy([&] { machine.set({to("x", 1.0)}); });
    busy([&] { machine.init({}); });
    pass(2.0);
    machine.move({to("x", 1.0)});
    busy([&] { machine.unload_probe(); });
    busy([&] { machine.offset_probe({to("x", 1.0)}); });
}

TEST_F(ProbesTest, WhatCannotBeLoaded) {
    const struct {
        TipId id;
        Error error;
    } rows[] = {
        {{0, 0}, Error::invalid_probe_number},
        {{-1, 1}, Error::invalid_probe_number},
        {{10, 1}, Error::invalid_probe_number},
        {{2147483647, 1}, Error::invalid_probe_number},
        {{1, -1}, Error::invalid_tip_number},
        {{1, 5}, Error::invalid_tip_number},
        {{1, 2147483647}, Error::invalid_tip_number},
        {{3, 1}, Error::undefined_probe},
        {{3, 0}, Error::undefined_probe},
        {{9, 4}, Error::undefined_probe},
        {{1, 2}, Error::undefined_tip},
        {{2, 2}, Error::undefined_tip},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(refusal([&] { machine.load_probe(row.id); }), row.error)
            << row.id.probe << ' ' << row.id.tip;
        EXPECT_EQ(refusal([&] { machine.change_probe(row.id); }), row.error);
    }
    EXPECT_EQ(refusal([&] { machine.unload_probe(); }), Error::probe_already_unloaded);
    EXPECT_FALSE(machine.is_busy());
    load({1, 1});
    EXPECT_EQ(refusal([&] { machine.load_probe({7, 2}); }), Error::probe_already_loaded);
    EXPECT_EQ(refusal([&] { machine.change_probe({1, 1}); }), Error::probe_already_loaded);
}

TEST_F(ProbesTest, Defining) {
    probes().define({3, 4}, {1.5, -2.5, 3.25, 0.0});
    EXPECT_EQ(probes().tips().at({3, 4}), (TipNumbers{1.5, -2.5, 3.25, 0.0}));
    const auto before = probes().tips();
    EXPECT_EQ(refusal([&] { probes().define({3, 4}, {}); }), Error::tip_already_defined);
    EXPECT_EQ(refusal([&] { probes().define({0, 1}, {}); }), Error::invalid_probe_number);
    EXPECT_EQ(refusal([&] { probes().define({10, 1}, {}); }), Error::invalid_probe_number);
    EXPECT_EQ(refusal([&] { probes().define({3, 0}, {}); }), Error::invalid_tip_number);
    EXPECT_EQ(refusal([&] { probes().define({3, 5}, {}); }), Error::invalid_tip_number);
    EXPECT_EQ(refusal([&] { probes().define({3, 1}, {nan, 0, 0, 0}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { probes().define({3, 1}, {0, 0, -infinity, 0}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { probes().define({3, 1}, {0, 0, 0, -1}); }), Error::argument_out_of_range);
    EXPECT_EQ(probes().tips(), before);
}

TEST_F(ProbesTest, Deleting) {
    load({2, 3});
    const auto before = probes().tips();
    EXPECT_EQ(refusal([&] { probes().remove({2, 3}); }), Error::active_probe);
    EXPECT_EQ(refusal([&] { probes().remove({2, 0}); }), Error::active_probe);
    EXPECT_EQ(refusal([&] { probes().remove({3, 1}); }), Error::undefined_probe);
    EXPECT_EQ(refusal([&] { probes().remove({2, 2}); }), Error::undefined_tip);
    EXPECT_EQ(refusal([&] { probes().remove({-5, 2}); }), Error::invalid_probe_number);
    EXPECT_EQ(probes().tips(), before);
    probes().remove({2, 1});
    EXPECT_EQ(probes().tips().size(), 3u);
    machine.unload_probe();
    pass(2.0);
    probes().remove({2, 0});
    EXPECT_EQ(refusal([&] { machine.load_probe({2, 3}); }), Error::undefined_probe);
    probes().remove({1, 0});
    probes().remove({7, 2});
    EXPECT_TRUE(probes().tips().empty());
}

TEST_F(ProbesTest, AnOffsetMovesTheLoadedTip) {
    EXPECT_EQ(refusal([&] { machine.offset_probe({to("x", 1.0)}); }), Error::probe_not_loaded);
    load({2, 1});
    machine.offset_probe({to("x", 21.5), by("z", -0.5)});
    EXPECT_EQ(probes().tips().at({2, 1}), (TipNumbers{21.5, 0, -60.5, 2}));
    EXPECT_FALSE(machine.is_busy());
    const auto before = probes().tips();
    EXPECT_EQ(refusal([&] { machine.offset_probe({}); }), Error::no_axis_specified);
    EXPECT_EQ(refusal([&] { machine.offset_probe({to("c", 1.0)}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.offset_probe({to("q", 1.0)}); }), Error::unknown_axis);
    EXPECT_EQ(refusal([&] { machine.offset_probe({to("y", 1.0), to("y", 2.0)}); }), Error::invalid_axis);
    EXPECT_EQ(refusal([&] { machine.offset_probe({to("y", 1.0), to("x", nan)}); }), Error::invalid_argument);
    EXPECT_EQ(refusal([&] { machine.offset_probe({form("y", wire::TargetForm::highest)}); }),
              Error::invalid_argument);
    EXPECT_EQ(probes().tips(), before);
}

TEST_F(ProbesTest, WithoutAProbeThereIsNoScan) {
    EXPECT_EQ(refusal([&] { machine.scan({to("x", 1.0)}); }), Error::probe_not_loaded);
    EXPECT_EQ(refusal([&] { machine.move_to_contact({to("x", 1.0)}); }), Error::probe_not_loaded);
    load({1, 1});
    EXPECT_EQ(refusal([&] { machine.scan({to("x", 1.0)}); }), Error::none);
}

TEST_F(ProbesTest, AFixedProbeIsOne) {
    Machine plain(rig::plain_machine(), said);
    EXPECT_FALSE(plain.probes().exists());
    EXPECT_EQ(plain.value("probe"), 1.0);
    EXPECT_EQ(plain.value("tip"), 1.0);
}

TEST_F(ProbesTest, AChangerComesAndGoes) {
    machine.fit_changer(true);
    machine.fit_changer(true);
    EXPECT_TRUE(probes().has_changer());
    EXPECT_EQ(said.events, std::vector{Event::capabilities_changed});
    machine.fit_changer(false);
    EXPECT_EQ(said.events.size(), 2u);
    Machine plain(rig::plain_machine(), said);
    EXPECT_EQ(refusal([&] { plain.fit_changer(true); }), Error::wrong_state);
}

TEST_F(ProbesTest, ProbeSystemsAreLoadedAndUnloaded) {
    const ProbesystemStore& systems = machine.probesystems();
    machine.load_probesystem("A", 4);
    pass(4.9);
    EXPECT_FALSE(systems.is_loaded());
    pass(0.1);
    EXPECT_EQ(systems.loaded_name(), "A");
    EXPECT_EQ(systems.loaded_id(), 4);
    machine.load_probesystem("A", 1);  // takes the other's place
    pass(5.0);
    EXPECT_EQ(systems.loaded_id(), 1);
    EXPECT_EQ(said.events, (std::vector{Event::probesystem_changed, Event::probesystem_changed}));
    machine.load_probesystem("A", 1);
    pass(0.0);
    EXPECT_EQ(said.warnings, std::vector{Warning::no_effect});
    machine.unload_probesystem();
    pass(5.0);
    EXPECT_FALSE(systems.is_loaded());
    EXPECT_EQ(systems.loaded_name(), "");
    EXPECT_EQ(said.events.size(), 3u);
    EXPECT_EQ(said.ends, (std::vector{Error::none, Error::none, Error::none, Error::none}));
}

TEST_F(ProbesTest, WhatIsWrongWithAProbeSystem) {
    ProbesystemStore& systems = machine.probesystems();
    EXPECT_EQ(refusal([&] { machine.unload_probesystem(); }), Error::probesystem_not_loaded);
    for (const auto& act : {std::function<void(const std::string&, std::int32_t)>(
                                [&](const std::string&n, std::int32_t i) { machine.load_probesystem(n, i); }),
                            std::function<void(const std::string&, std::int32_t)>(
                                [&](const std::string&n, std::int32_t i) { systems.remove(n, i); })}) {
        EXPECT_EQ(refusal([&] { act("C", 1); }), Error::unknown_probesystem);
        EXPECT_EQ(refusal([&] { act("a", 1); }), Error::unknown_probesystem);
        EXPECT_EQ(refusal([&] { act("", 1); }), Error::unknown_probesystem);
        EXPECT_EQ(refusal([&] { act("B", 1); }), Error::undefined_probesystem);
        EXPECT_EQ(refusal([&] { act("A", 2); }), Error::undefined_probesystem_id);
        EXPECT_EQ(refusal([&] { act("A", -4); }), Error::undefined_probesystem_id);
        EXPECT_EQ(refusal([&] { act("A", 0); }), Error::undefined_probesystem_id);
    }
    EXPECT_EQ(refusal([&] { systems.define("C", 1, {}); }), Error::probesystem_not_supported);
    EXPECT_EQ(refusal([&] { systems.define("A", 4, {}); }), Error::probesystem_already_defined);
    EXPECT_EQ(refusal([&] { systems.define("A", 0, {}); }), Error::argument_out_of_range);
    EXPECT_EQ(refusal([&] { systems.define("A", -1, {}); }), Error::argument_out_of_range);
    EXPECT_EQ(refusal([&] { systems.define("A", 2, {0, nan}); }), Error::invalid_argument);
    EXPECT_EQ(systems.supported().at("A").ids.size(), 2u);
    machine.load_probesystem("A", 4);
    pass(5.0);
    EXPECT_EQ(refusal([&] { systems.remove("A", 4); }), Error::wrong_state);
    systems.remove("A", 1);
    EXPECT_EQ(systems.supported().at("A").ids.size(), 1u);
}

TEST_F(ProbesTest, IdsAreBounded) {
    ProbesystemStore& systems = machine.probesystems();
    for (std::int32_t id = 1; id <= 1000; ++id) systems.define("B", id, {});
    EXPECT_EQ(refusal([&] { systems.define("B", 1001, {}); }), Error::buffer_overrun);
}

}  // namespace
}  // namespace zendrix::sim
