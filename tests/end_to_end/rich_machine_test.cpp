// Probes, probe systems, keypad, spindles, wobble and autoinfo: driver and client against the rich machine.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "czendrixcom.h"
#include "driver_host.h"
#include "log_of_work.h"
#include "recording_facilities.h"
#include "served_machine.h"

namespace {

using zendrix::sim::Machine;
using Names = std::vector<std::string>;

// The rich machine, ready to move, with a host on it and somebody who stands at the machine.
class RichMachine : public ::testing::Test {
protected:
    void SetUp() override {
        recording::reset();
        ASSERT_TRUE(host.driver().Open());
        host.initialise();
        hand.ThrowExceptions(true);
        host.output().clear();
    }

    // Runs what a factory makes to its end; what it said.
    template <class Factory, class... Arguments>
    std::string run(Factory factory, const Arguments&... arguments) {
        MOutputChannel channel(7);
        return host.finish((driver().*factory)(&channel, arguments...), channel);
    }

    // Does something at the machine, and waits until the host has heard this event.
    void at_machine(const std::string& what, const std::string& event) {
        host.output().clear();
        Names reply;
        hand.Execute(("sim " + what).c_str(), reply, nullptr);
        EXPECT_TRUE(run_host(
            host.notifier(),
            [&] { return host.output().get_text().find("event \"" + event + "\"") != std::string::npos; },
            [&] { host.poll(); }))
            << event;
    }

    // Looks at the machine itself.
    template <class Look>
    auto truth(Look look) {
        decltype(look(std::declval<const Machine&>())) seen{};
        machine.server().invoke(
            [&](zendrix::sim::Hub& hub, zendrix::sim::Clock&) { seen = look(hub.machine()); });
        return seen;
    }

    Names keypad(bool is_active) {
        Names names;
        const char* name = is_active ? driver().GetFirstActiveKeypadAxis() : driver().GetFirstKeypadAxis();
        while (name) {
            names.emplace_back(name);
            name = is_active ? driver().GetNextActiveKeypadAxis() : driver().GetNextKeypadAxis();
        }
        return names;
    }

    std::map<std::string, double> spinning() {
        std::map<std::string, double> found;
        double value = 0.0;
        for (const char* name = driver().GetFirstActiveSpinAxis(&value); name;
             name = driver().GetNextActiveSpinAxis(&value)) {
            found[name] = value;
        }
        return found;
    }

    M2ZendrixMachAbstract& driver() { return host.driver(); }

    ServedMachine machine{zendrix::sim::read_machine(MACHINES_DIR "/rich.ini"), "cached_axes=x,w\n"};
    DriverHost host{machine.name, machine.directory()};
    CZendrixCOM hand{nullptr, nullptr, ("127.0.0.1 " + std::to_string(machine.port())).c_str(), nullptr};
};

std::string error(const std::string& text) { return "0007\terror \"" + text + "\"\r\n"; }

TEST_F(RichMachine, ProbesAreLoadedAndUnloaded) {
    EXPECT_TRUE(driver().HasProbes());
    EXPECT_EQ(driver().GetMaxProbeNum(), 64);
    EXPECT_EQ(driver().GetMinProbeNum(), 8);
    EXPECT_EQ(driver().GetActiveProbeNum(), 1);
    EXPECT_EQ(driver().GetActiveTipNum(), 1);
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeUnloadCommand), "0000\tevent \"probe: unloaded\"\r\n");
    EXPECT_EQ(driver().GetActiveProbeNum(), 0);
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeUnloadCommand), error("probe already unloaded"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeLoadCommand, 2L, 3L), "0000\tevent \"probe: loaded\"\r\n");
    EXPECT_EQ(driver().GetActiveProbeNum(), 2);
    EXPECT_EQ(driver().GetActiveTipNum(), 3);
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeLoadCommand, 1L, 1L), error("probe already loaded"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeChangeCommand, 1L, 1L), error("transaction: command unknown"));
    at_machine("changer 1", "capabilities changed");
    EXPECT_TRUE(driver().IsCommandEnabled("MMachProbeChangeCommand"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeChangeCommand, 12L, 8L),
              "0000\tevent \"probe: unloaded\"\r\n0000\tevent \"probe: loaded\"\r\n");
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeChangeCommand, 2L, 0L),
              "0007\twarning \"ambiguous tip, using first\"\r\n0000\tevent \"probe: unloaded\"\r\n"
              "0000\tevent \"probe: loaded\"\r\n");
    EXPECT_EQ(driver().GetActiveTipNum(), 1);
}

TEST_F(RichMachine, TipsAreDefinedDeletedAndMoved) {
    EXPECT_TRUE(driver().IsProbeDefined(2));
    EXPECT_FALSE(driver().IsProbeDefined(5));
    EXPECT_TRUE(driver().IsTipDefined(2, 3));
    EXPECT_FALSE(driver().IsTipDefined(2, 4));
    EXPECT_EQ(driver().ListProbes(0, 0).size(), 6u);
    EXPECT_EQ(driver().ListProbes(2, 0).size(), 3u);
    using Place = std::map<std::string, double>;
    EXPECT_EQ(
        run(&MMachAbstract::NewMMachProbeDefineCommand, 5L, 2L, Place{{"x", 1.5}, {"d", 3.25}, {"X", 9}}),
        "");
    const auto defined = driver().ListProbes(5, 2);
    ASSERT_EQ(defined.size(), 1u);
    EXPECT_EQ(defined[0].x1, 1.5);
    EXPECT_EQ(defined[0].x2, 0.0);
    EXPECT_EQ(defined[0].x4, 3.25);
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeDefineCommand, 5L, 2L, Place{}), error("tip already defined"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeDeleteCommand, 5L, 2L), "");
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeDeleteCommand, 5L, 2L), error("undefined probe"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeDeleteCommand, 1L, 1L), error("can't delete active probe"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeOffsetCommand,
                  AxisTargetMap{{"x", {0.5, false}}, {"z", {1.0, true}}}),
              "");
    const auto moved = driver().ListProbes(1, 1);
    ASSERT_EQ(moved.size(), 1u);
    EXPECT_EQ(moved[0].x1, 0.5);
    EXPECT_EQ(moved[0].x3, -49.0);
}

TEST_F(RichMachine, ProbeSystems) {
    const std::string swivel = "Swivel \"S2\"";
    EXPECT_TRUE(driver().HasProbesystems());
    Names supported;
    for (const std::string* name = driver().GetFirstSupportedProbesystem(); name;
         name = driver().GetNextSupportedProbesystem()) {
        supported.push_back(*name);
    }
    EXPECT_EQ(supported, (Names{"Fixed head", "Optical", swivel}));
    EXPECT_TRUE(driver().IsProbesystemSupported("Optical"));
    EXPECT_FALSE(driver().IsProbesystemDefined("Optical"));
    EXPECT_FALSE(driver().IsProbesystemSupported("optical"));
    EXPECT_TRUE(driver().IsProbesystemIdDefined(swivel, 12));
    EXPECT_FALSE(driver().IsProbesystemIdDefined(swivel, 13));
    EXPECT_EQ(driver().ListProbesystems("", 0).size(), 4u);
    EXPECT_EQ(driver().ListProbesystems(swivel, 4).size(), 1u);
    EXPECT_TRUE(driver().IsProbesystemLoaded());
    EXPECT_EQ(driver().GetActiveProbesystemName(), "Fixed head");
    EXPECT_EQ(driver().GetActiveProbesystemType().type, 2);
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemUnloadCommand),
              "0000\tevent \"probesystem changed\"\r\n");
    EXPECT_FALSE(driver().IsProbesystemLoaded());
    EXPECT_EQ(driver().GetActiveProbesystemName(), "");
    EXPECT_EQ(driver().GetActiveProbesystemType().type, 1);
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemUnloadCommand), error("probesystem not loaded"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemLoadCommand, swivel, 12L),
              "0000\tevent \"probesystem changed\"\r\n");
    EXPECT_EQ(driver().GetActiveProbesystemName(), swivel);
    EXPECT_EQ(driver().GetActiveProbesystemIdNum(), 12);
    const MMachProbesystemType type = driver().GetActiveProbesystemType();
    EXPECT_EQ(type.type, 3);
    EXPECT_EQ(type.b, 24);
    EXPECT_EQ(type.d, 7.5);
    MMachProbesystemDefinition optical{"Optical", 3, {1, 2, 3, 4, 5, 6.5}};
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemDefineCommand, optical), "");
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemDefineCommand, optical),
              error("probesystem already defined"));
    EXPECT_EQ(driver().ListProbesystems("Optical", 3).at(0).x6, 6.5);
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemDeleteCommand, std::string("Optical"), 3L), "");
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemDeleteCommand, std::string("Optical"), 3L),
              error("undefined probesystem"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemLoadCommand, std::string("No such"), 3L),
              error("unknown probesystem"));
}

TEST_F(RichMachine, TheKeypadFollowsCommandsAndKeys) {
    EXPECT_TRUE(driver().HasKeypad());
    EXPECT_EQ(keypad(false), (Names{"c", "ha", "hb", "hc", "ka", "x", "y", "z"}));
    EXPECT_EQ(keypad(true), Names{});
    EXPECT_EQ(run(&MMachAbstract::NewMMachKeypadEnableCommand, AxisSet{"x"}),
              "0000\tevent \"keypad: enabled\"\r\n");
    EXPECT_EQ(keypad(true), Names{"x"});
    EXPECT_EQ(host.move({{"x", {1.0, false}}}), "0002\terror \"keypad: enabled\"\r\n");
    at_machine("key \"key-enable x z\"", "keypad: changed");
    EXPECT_NE(host.output().get_text().find("event \"keypad: key-enable x z\""), std::string::npos);
    EXPECT_EQ(keypad(true), (Names{"x", "z"}));
    EXPECT_EQ(run(&MMachAbstract::NewMMachKeypadEnableCommand, AxisSet{"z"}),
              "0007\twarning \"operation with no effect\"\r\n");
    EXPECT_EQ(run(&MMachAbstract::NewMMachKeypadDisableCommand, AxisSet{}),
              "0000\tevent \"keypad: disabled\"\r\n");
    EXPECT_EQ(keypad(true), Names{});
    EXPECT_TRUE(driver().IsKeypadAxis("ha"));
    EXPECT_FALSE(driver().IsKeypadAxis("w"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachKeypadEnableCommand, AxisSet{"q"}), error("unknown axis"));
}

TEST_F(RichMachine, AKeypadListThatFailsIsAskedForAgain) {
    Names reply;
    hand.Execute("sim fault \"refuse@keypad list:1\"", reply, nullptr);
    EXPECT_THROW(driver().GetFirstKeypadAxis(), CZendrixError);
    EXPECT_EQ(keypad(false).size(), 8u);
}

TEST_F(RichMachine, Spindles) {
    EXPECT_TRUE(driver().HasSpin());
    EXPECT_STREQ(driver().GetFirstSpinAxis(), "c");
    EXPECT_STREQ(driver().GetNextSpinAxis(), "sp");
    EXPECT_EQ(driver().GetNextSpinAxis(), nullptr);
    EXPECT_EQ(spinning(), (std::map<std::string, double>{{"sp", -36.0}}));
    using Directions = std::map<std::string, bool>;
    const auto has_error = [](const std::string& said) { return said.find("error") != std::string::npos; };
    EXPECT_FALSE(
        has_error(run(&MMachAbstract::NewMMachSpinEnableCommand, Directions{{"c", false}, {"sp", true}})));
    const std::map<std::string, double> expected{{"c", -90.0}, {"sp", 36.0}};
    EXPECT_TRUE(run_host(
        host.notifier(), [&] { return spinning() == expected; }, [&] { host.poll(); }));
    EXPECT_FALSE(has_error(run(&MMachAbstract::NewMMachSpinDisableCommand, AxisSet{"c", "sp"})));
    EXPECT_TRUE(run_host(
        host.notifier(), [&] { return spinning().empty(); }, [&] { host.poll(); }));
    EXPECT_EQ(run(&MMachAbstract::NewMMachSpinEnableCommand, Directions{{"x", true}}), error("invalid axis"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachSpinEnableCommand, Directions{{"", false}}), error("unknown axis"));
}

TEST_F(RichMachine, Wobble) {
    MMachWobbleParameters wobble;
    driver().GetWobbleParameters(wobble);
    EXPECT_EQ(wobble.values[5], 90.0);
    EXPECT_EQ(run(&MMachAbstract::NewMMachWobbleCommand, MMachWobbleParameters{{1, -2, 3, 4.5, 5, 6}}), "");
    EXPECT_EQ(
        run(&MMachAbstract::NewMMachWobbleCommand, MMachWobbleParameters{{1, std::nan(""), 3, 4, 5, 6}}),
        error("invalid argument"));
    driver().GetWobbleParameters(wobble);
    EXPECT_EQ(wobble.values[1], -2.0);
    EXPECT_EQ(wobble.values[3], 4.5);
}

TEST_F(RichMachine, AutoinfoBringsWholeRecordsOnly) {
    Names reply;
    hand.Execute("sim place \"w\"=12.5", reply, nullptr);
    hand.Execute("sim fault \"cut@record:3\"", reply, nullptr);
    ASSERT_TRUE(driver().StartAutoinfo(5, 1, {"w", "probe", "speed"}));
    EXPECT_TRUE(driver().IsAutoinfoActive());
    int records = 0;
    std::vector<double> record;
    EXPECT_TRUE(run_host(
        host.notifier(), [&] { return records >= 50; },
        [&] {
            while (driver().GetAutoinfo(record)) {
                EXPECT_EQ(record, (std::vector<double>{12.5, 1.0, 80.0}));
                ++records;
            }
        }));
    driver().StopAutoinfo();
    EXPECT_FALSE(driver().IsAutoinfoActive());
    EXPECT_FALSE(driver().GetAutoinfo(record));
    const auto log = log_of_work();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_NE(log[0].find("the server's watch line holds 2 values for 3 axes; the last 2 are left out"),
              std::string::npos)
        << log[0];
    EXPECT_FALSE(driver().StartAutoinfo(5, 1, {"nosuch"}));
    driver().StopAutoinfo();
}

TEST_F(RichMachine, CapabilitiesThatChangeAreInThePictureWhenTheHostHears) {
    const auto flags = [&](const char* axis) { return driver().GetAxisInfo(axis)->flags; };
    EXPECT_EQ(flags("hb") & 16u, 0u);
    EXPECT_TRUE(driver().IsMovePossibleWith({"hb"}));
    at_machine("deactivate \"hb\"", "capabilities changed");
    EXPECT_EQ(flags("hb") & 16u, 16u);
    EXPECT_FALSE(driver().IsMovePossibleWith({"hb"}));
    EXPECT_FALSE(driver().IsInInitList("hb"));
    EXPECT_TRUE(driver().IsKeypadAxis("hb"));  // the list holds what is out of use as well
    at_machine("activate \"hb\"", "capabilities changed");
    EXPECT_EQ(flags("hb") & 16u, 0u);
    EXPECT_TRUE(driver().IsKeypadAxis("hb"));
    EXPECT_TRUE(driver().IsCommandEnabled("MMachMovehomeCommand"));
    at_machine("withdraw \"movehome\"", "capabilities changed");
    EXPECT_FALSE(driver().IsCommandEnabled("MMachMovehomeCommand"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachMovehomeCommand), error("transaction: command unknown"));
    at_machine("restore \"movehome\"", "capabilities changed");
    EXPECT_TRUE(driver().IsCommandEnabled("MMachMovehomeCommand"));
}

TEST_F(RichMachine, WhatAxesCanDo) {
    EXPECT_TRUE(driver().IsMovePossibleWith({"x", "hb"}));
    EXPECT_FALSE(driver().IsMovePossibleWith({"x", "w"}));
    EXPECT_TRUE(driver().IsScanningPossibleWith({"x", "c"}));
    EXPECT_FALSE(driver().IsScanningPossibleWith({"ha"}));
    EXPECT_TRUE(driver().IsZeroMovePossibleWith({"x"}));
    EXPECT_TRUE(driver().IsLimitMovePossibleWith({}));
    EXPECT_FALSE(driver().IsLimitMovePossibleWith({"c"}));
    EXPECT_TRUE(driver().IsAxisInitialized("x"));
    EXPECT_FALSE(driver().IsAxisInitialized("w"));
    EXPECT_TRUE(driver().IsInitialized());
    EXPECT_TRUE(driver().IsInInitList("hb"));
    EXPECT_STREQ(driver().GetComponentInfo("keypad")->version.c_str(), "2.2");
    EXPECT_EQ(driver().GetFirstOptionInfo()->name, "scanning");
}

TEST_F(RichMachine, HostileNumbersAndNamesChangeNothing) {
    const auto tips = truth([](const Machine& m) { return m.probes().tips(); });
    const struct {
        long probe;
        long tip;
        const char* text;
    } rows[] = {{-1, 1, "invalid probe number"},
                {65, 1, "invalid probe number"},
                {2147483647, 1, "invalid probe number"},
                {0, 0, "invalid probe number"},
                {2, -7, "invalid tip number"},
                {2, 9, "invalid tip number"},
                {44, 1, "undefined probe"},
                {2, 7, "undefined tip"}};
    for (const auto& row : rows) {
        EXPECT_EQ(run(&MMachAbstract::NewMMachProbeLoadCommand, row.probe, row.tip), error(row.text));
        EXPECT_EQ(run(&MMachAbstract::NewMMachProbeDeleteCommand, row.probe, row.tip),
                  error(row.probe == 0 ? "invalid probe number" : row.text));
    }
    using Place = std::map<std::string, double>;
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbeDefineCommand, 5L, 1L, Place{{"y", std::nan("")}}),
              error("invalid argument"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemLoadCommand, std::string("a \"b\"\r\n\\ c"), 1L),
              error("unknown probesystem"));
    EXPECT_EQ(run(&MMachAbstract::NewMMachProbesystemLoadCommand, std::string("Fixed head"), 2147483647L),
              error("undefined probesystem id"));
    EXPECT_EQ(truth([](const Machine& m) { return m.probes().tips(); }), tips);
    EXPECT_EQ(driver().GetActiveProbeNum(), 1);
}

}  // namespace
