// What somebody does at the machine, through `sim`.
#include <gtest/gtest.h>

#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::Client;
using rig::Rig;

const std::string capabilities_changed = "0000\tevent \"capabilities changed\"\r\n";

struct Control : testing::Test {
    Control() { rig.client.ask("0001\tmaster"); }

    // Without the closing ready.
    std::string ask(const std::string& request) {
        const std::string ready = "0042\tready\r\n";
        std::string answer = rig.client.ask("0042\t" + request);
        EXPECT_TRUE(answer.ends_with(ready)) << answer;
        return answer.substr(0, answer.size() - std::min(answer.size(), ready.size()));
    }
    bool knows(const std::string& words) {
        return ask("commands").find("data \"" + words + "\"\r\n") != std::string::npos;
    }

    Rig rig{read_machine(MACHINES_DIR "/rich.ini")};
};

TEST_F(Control, AKeyIsToldAndThenHasItsEffect) {
    EXPECT_EQ(ask("sim key \"key-enable x z\""),
              "0000\tevent \"keypad: key-enable x z\"\r\n0000\tevent \"keypad: enabled\"\r\n");
    EXPECT_EQ(ask("keypad active"), "0042\tdata \"x\"\r\n0042\tdata \"z\"\r\n");
    EXPECT_EQ(ask("sim key \"key-disable z\""),
              "0000\tevent \"keypad: key-disable z\"\r\n0000\tevent \"keypad: changed\"\r\n");
    EXPECT_EQ(ask("sim key \"key-start\""), "0000\tevent \"keypad: key-start\"\r\n");
    EXPECT_EQ(ask("sim key \"key-1\""), "0000\tevent \"keypad: key-1\"\r\n");
}

TEST_F(Control, EveryEventOfTheCatalogueCanBeCaused) {
    EXPECT_EQ(ask("sim event \"door open\""), "0000\tevent \"door open\"\r\n");
    EXPECT_EQ(ask("sim event \"machine changed\""), "0000\tevent \"machine changed\"\r\n");
    EXPECT_EQ(ask("sim event \"start/stop\""), "0000\tevent \"start/stop\"\r\n");
}

TEST_F(Control, CapabilitiesChange) {
    EXPECT_EQ(ask("sim deactivate \"hb\""), capabilities_changed);
    EXPECT_NE(ask("capabilities").find("\"hb\" 4 "), std::string::npos);
    EXPECT_EQ(ask("init list").find("\"hb\""), std::string::npos);
    EXPECT_EQ(ask("keypad list").find("\"hb\""), std::string::npos);
    EXPECT_EQ(ask("sim activate \"hb\""), capabilities_changed);
    EXPECT_NE(ask("capabilities").find("\"hb\" 2 "), std::string::npos);

    EXPECT_TRUE(knows("movehome"));
    EXPECT_EQ(ask("sim withdraw \"movehome\""), capabilities_changed);
    EXPECT_FALSE(knows("movehome"));
    EXPECT_EQ(ask("movehome"), "0042\terror \"transaction: command unknown\"\r\n");
    EXPECT_EQ(ask("sim restore \"movehome\""), capabilities_changed);
    EXPECT_TRUE(knows("movehome"));

    EXPECT_FALSE(knows("probe change"));
    EXPECT_EQ(ask("sim changer 1"), capabilities_changed);
    EXPECT_TRUE(knows("probe change"));
    EXPECT_EQ(ask("sim changer 1"), "");
    EXPECT_EQ(ask("sim changer 0"), capabilities_changed);
    EXPECT_FALSE(knows("probe change"));
}

TEST_F(Control, TheEmergencyButton) {
    EXPECT_EQ(rig.client.ask("0007\tprobe unload"), "0007\taccepted\r\n");
    EXPECT_EQ(ask("sim emergency 1"),
              "0007\terror \"machine: emergency\"\r\n0007\tready\r\n"
              "0000\tevent \"spin: changed\"\r\n0000\tevent \"keypad: emergency active\"\r\n");
    EXPECT_EQ(ask("probe unload"), "0042\terror \"machine: emergency\"\r\n");
    EXPECT_EQ(ask("spin active"), "");
    EXPECT_EQ(ask("sim emergency 0"), "0000\tevent \"keypad: emergency passive\"\r\n");
    EXPECT_EQ(ask("probe unload"), "0042\terror \"machine: emergency\"\r\n");  // until the reset
    ask("reset");
    EXPECT_EQ(rig.client.ask("0007\tprobe unload"), "0007\taccepted\r\n");
}

TEST_F(Control, WhatIsWrongIsRefused) {
    const std::string before = ask("sim state");
    const struct {
        const char* request;
        const char* text;
    } rows[] = {
        {"sim", "missing argument"},
        {"sim dance", "invalid argument"},
        {"sim key", "missing argument"},
        {"sim key \"enable\"", "invalid argument"},
        {"sim key \"key-nosuch\"", "invalid argument"},
        {"sim key \"key-1\" 2", "syntax invalid"},
        {"sim event \"\"", "invalid argument"},
        {"sim event \"no such\"", "invalid argument"},
        {"sim event \"unknown event number 68\"", "invalid argument"},
        {"sim deactivate \"q\"", "unknown axis"},
        {"sim deactivate \"hc\"", "invalid axis"},
        {"sim activate \"x\"", "invalid axis"},
        {"sim activate \"hc\"", "invalid axis"},
        {"sim withdraw \"fly\"", "invalid argument"},
        {"sim withdraw \"sim\"", "invalid argument"},
        {"sim withdraw \"commands\"", "invalid argument"},
        {"sim changer 2", "invalid argument"},
        {"sim changer", "missing argument"},
        {"sim emergency off", "invalid argument"},
        {"sim place \"x\"=1", "wrong state"},
        {"sim place \"w\"=1000", "argument out of range"},
        {"sim state now", "syntax invalid"},
        {"sim fault \"close\"", "invalid argument"},
        {"sim fault \"close@nosuch:1\"", "invalid argument"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ask(row.request), std::string("0042\terror \"") + row.text + "\"\r\n") << row.request;
    }
    EXPECT_EQ(ask("sim state"), before);
}

TEST_F(Control, AFaultIsPlannedWhileItRuns) {
    EXPECT_EQ(ask("sim fault \"refuse@keypad list:2\""), "");
    EXPECT_NE(ask("keypad list"), "0042\terror \"internal error\"\r\n");
    EXPECT_EQ(ask("keypad list"), "0042\terror \"internal error\"\r\n");
    EXPECT_NE(ask("keypad list"), "0042\terror \"internal error\"\r\n");
    for (int fault = 1; fault < 1000; ++fault) ask("sim fault \"gap@probe list:1000000\"");
    EXPECT_EQ(ask("sim fault \"gap@probe list:1\""), "0042\terror \"buffer overrun\"\r\n");
}

TEST_F(Control, TheTruth) {
    ask("sim place \"w\"=12.5");
    ask("sim withdraw \"movehome\"");
    const std::string truth = ask("sim state");
    for (const char* line :
         {"busy 0", "emergency 0", "axis \"c\" 0 0 0 0 0 0", "axis \"hc\" 4 0 0 0 0 0",
          "axis \"sp\" 0 0 0 0 0 -36", "axis \"w\" 1 12.5 0 0 0 0", "pseudo \"speed\" 80",
          "pseudo \"init\" 0", "tip 12 8 1.5 -2.25 -75 0.5", "loaded 1 1", "changer 0",
          "probesystem \"Swivel \\\"S2\\\"\" 2 2 24 0.5 7.5", "probesystem-id \"Fixed head\" 1 0 0 120 0 0 0",
          "loaded-probesystem \"Fixed head\" 1", "wobble 0.5 2 0 0 0 90", "withdrawn \"movehome\""}) {
        EXPECT_NE(truth.find(std::string("0042\tdata ") + line + "\r\n"), std::string::npos) << line;
    }
    Rig plain;
    EXPECT_EQ(plain.client.ask("0001\tsim state").find("probesystem"), std::string::npos);
}

}  // namespace
}  // namespace zendrix::sim
