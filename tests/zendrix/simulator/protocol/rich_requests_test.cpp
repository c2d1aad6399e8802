// Requests about probes, probe systems, keypad, spindles and wobble, on the machine that has them all.
#include <gtest/gtest.h>

#include "protocol/requests.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::Client;
using rig::Rig;

std::string ready(const std::string& id) { return id + "\tready\r\n"; }
std::string event(const char* text) { return std::string("0000\tevent \"") + text + "\"\r\n"; }
std::string refused(const std::string& id, const char* text) {
    return id + "\terror \"" + text + "\"\r\n" + ready(id);
}

struct RichRequests : testing::Test {
    RichRequests() { rig.client.ask("0001\tmaster"); }

    std::string ask(const std::string& request) { return rig.client.ask("0042\t" + request); }
    // What comes until `seconds` later.
    std::string carry_out(const std::string& request, double seconds) {
        const std::string begin = ask(request);
        rig.pass(seconds);
        return begin + rig.client.take();
    }

    Rig rig{read_machine(MACHINES_DIR "/rich.ini")};
};

const std::string accepted = "0042\taccepted\r\n";

TEST_F(RichRequests, Queries) {
    const struct {
        const char* request;
        const char* answer;
    } rows[] = {
        {"probe info", "0042\tdata 1 1 0 0 -50 3\r\n"},
        {"probe list 1 1", "0042\tdata 1 1 0 0 -50 3\r\n"},
        {"probe list 2 0",
         "0042\tdata 2 1 20 0 -60 2\r\n0042\tdata 2 2 0 20 -60 2\r\n0042\tdata 2 3 -20 0 -60 2\r\n"},
        {"probe list 0 8", "0042\tdata 12 8 1.5 -2.25 -75 0.5\r\n"},
        {"probe list 50 1", ""},
        {"probe list -1 -2147483648", ""},
        {"probesystem list \"\"",
         "0042\tdata \"Fixed head\"\r\n0042\tdata \"Optical\"\r\n0042\tdata \"Swivel \\\"S2\\\"\"\r\n"},
        {"probesystem list \"Optical\"", "0042\tdata \"Optical\"\r\n"},
        {"probesystem list \"optical\"", ""},
        {"probesystem records \"\"",
         "0042\tdata \"Fixed head\" 1 0 0 120 0 0 0\r\n0042\tdata \"Optical\"\r\n"
         "0042\tdata \"Swivel \\\"S2\\\"\" 3 0 0 140 0 0 0\r\n"
         "0042\tdata \"Swivel \\\"S2\\\"\" 4 0 0 140 0 0 90\r\n"
         "0042\tdata \"Swivel \\\"S2\\\"\" 12 0.1 -0.2 140.5 0 15 0\r\n"},
        {"probesystem records \"Optical\"", ""},
        {"probesystem records \"Fixed head\"", "0042\tdata \"Fixed head\" 1 0 0 120 0 0 0\r\n"},
        {"probesystem info", "0042\tdata \"Fixed head\" 1\r\n"},
        {"probesystem type", "0042\tdata 1 1 0 0.25 0\r\n"},
        {"wobble get", "0042\tdata 0.5 2 0 0 0 90\r\n"},
        {"get \"probe\" \"tip\"", "0042\tdata 1 1\r\n"},
    };
    for (const auto& row : rows) EXPECT_EQ(ask(row.request), row.answer + ready("0042")) << row.request;
}

TEST_F(RichRequests, ProbesComeAndGo) {
    EXPECT_EQ(ask("probe load 2 2"), refused("0042", "probe already loaded"));
    EXPECT_EQ(carry_out("probe unload", 2.9), accepted);
    EXPECT_EQ(ask("probe list 0 0").find("wrong state"), std::string::npos);
    rig.pass(0.2);
    EXPECT_EQ(rig.client.take(), event("probe: unloaded") + ready("0042"));
    EXPECT_EQ(ask("probe info"), refused("0042", "probe not loaded"));
    EXPECT_EQ(ask("probe unload"), refused("0042", "probe already unloaded"));
    EXPECT_EQ(ask("get \"probe\" \"tip\""), "0042\tdata 0 0\r\n" + ready("0042"));
    EXPECT_EQ(carry_out("probe load 2 0", 3.0), accepted +
                                                    "0042\twarning \"ambiguous tip, using first\"\r\n" +
                                                    event("probe: loaded") + ready("0042"));
    EXPECT_EQ(ask("probe offset \"x\"+=0.5 \"z\"=-61"), accepted + ready("0042"));
    EXPECT_EQ(ask("probe info"), "0042\tdata 2 1 20.5 0 -61 2\r\n" + ready("0042"));
    EXPECT_EQ(ask("probe delete 2 0"), refused("0042", "can't delete active probe"));
    EXPECT_EQ(ask("probe delete 2 3"), ready("0042"));
    EXPECT_EQ(ask("probe define 2 3 1 2 3.25 4"), ready("0042"));
    EXPECT_EQ(ask("probe define 2 3 1 2 3.25 4"), refused("0042", "tip already defined"));
    EXPECT_EQ(ask("probe list 2 3"), "0042\tdata 2 3 1 2 3.25 4\r\n" + ready("0042"));
}

TEST_F(RichRequests, AnAbortEndsALoad) {
    EXPECT_EQ(ask("probe unload"), accepted);
    rig.pass(1.0);
    EXPECT_EQ(rig.client.ask("0043\tprobe load 2 1"), refused("0043", "probe already loaded"));
    EXPECT_EQ(rig.client.ask("0043\tprobesystem unload"), refused("0043", "wrong state"));
    EXPECT_EQ(rig.client.ask("0043\tprobe delete 3 1"), refused("0043", "wrong state"));
    EXPECT_EQ(rig.client.ask("0043\tabort 42"), ready("0043"));
    rig.pass(0.0);
    EXPECT_EQ(rig.client.take(), refused("0042", "aborted"));
    EXPECT_EQ(ask("get \"probe\""), "0042\tdata 1\r\n" + ready("0042"));
}

TEST_F(RichRequests, ALostClientsLoadStops) {
    Client other(rig.hub);
    EXPECT_EQ(other.ask("0007\tprobe unload"), "0007\taccepted\r\n");
    other.conversation.reset();
    rig.pass(10.0);
    EXPECT_EQ(ask("probe info"), "0042\tdata 1 1 0 0 -50 3\r\n" + ready("0042"));
}

TEST_F(RichRequests, ProbeSystems) {
    EXPECT_EQ(carry_out("probesystem unload", 5.0), accepted + event("probesystem changed") + ready("0042"));
    EXPECT_EQ(ask("probesystem info"), refused("0042", "probesystem not loaded"));
    EXPECT_EQ(ask("probesystem unload"), refused("0042", "probesystem not loaded"));
    EXPECT_EQ(ask("probesystem type"), "0042\tdata 0 0 0 0 0\r\n" + ready("0042"));
    EXPECT_EQ(carry_out("probesystem load \"Swivel \\\"S2\\\"\" 12", 5.0),
              accepted + event("probesystem changed") + ready("0042"));
    EXPECT_EQ(ask("probesystem info"), "0042\tdata \"Swivel \\\"S2\\\"\" 12\r\n" + ready("0042"));
    EXPECT_EQ(ask("probesystem type"), "0042\tdata 2 2 24 0.5 7.5\r\n" + ready("0042"));
    EXPECT_EQ(ask("probesystem load \"Optical\" 1"), refused("0042", "undefined probesystem"));
    EXPECT_EQ(ask("probesystem define \"Optical\" 1 1 2 3 4 5 6.5"), ready("0042"));
    EXPECT_EQ(ask("probesystem define \"Optical\" 1 1 2 3 4 5 6.5"),
              refused("0042", "probesystem already defined"));
    EXPECT_EQ(ask("probesystem records \"Optical\""),
              "0042\tdata \"Optical\" 1 1 2 3 4 5 6.5\r\n" + ready("0042"));
    EXPECT_EQ(ask("probesystem delete \"Optical\" 1"), ready("0042"));
    EXPECT_EQ(ask("probesystem delete \"Optical\" 1"), refused("0042", "undefined probesystem"));
    EXPECT_EQ(ask("probesystem delete \"Swivel \\\"S2\\\"\" 12"), refused("0042", "wrong state"));
}

TEST_F(RichRequests, TheKeypad) {
    EXPECT_EQ(carry_out("keypad enable \"x\"", 0.0), accepted + event("keypad: enabled") + ready("0042"));
    EXPECT_EQ(carry_out("keypad enable \"x\" \"z\"", 0.0),
              accepted + event("keypad: changed") + ready("0042"));
    EXPECT_EQ(ask("keypad active"), "0042\tdata \"x\"\r\n0042\tdata \"z\"\r\n" + ready("0042"));
    EXPECT_EQ(carry_out("keypad enable \"z\"", 0.0),
              accepted + "0042\twarning \"operation with no effect\"\r\n" + ready("0042"));
    EXPECT_EQ(ask("init \"x\""), refused("0042", "keypad: enabled"));
    EXPECT_EQ(carry_out("keypad disable", 0.0), accepted + event("keypad: disabled") + ready("0042"));
    EXPECT_EQ(ask("keypad active"), ready("0042"));
    EXPECT_EQ(ask("init \"x\""), accepted);
}

TEST_F(RichRequests, Spindles) {
    EXPECT_EQ(ask("spin enable \"c\""), refused("0042", "machine: not initialized"));
    EXPECT_EQ(carry_out("init \"c\"", 1000.0),
              accepted + event("movement: begin") + event("movement: end") + ready("0042"));
    EXPECT_EQ(ask("spin enable \"-c\" \"+sp\""), event("spin: changed") + ready("0042"));
    EXPECT_EQ(ask("spin active"), "0042\tdata \"-c\" 90\r\n0042\tdata \"+sp\" 36\r\n" + ready("0042"));
    EXPECT_EQ(ask("spin enable \"-c\""), ready("0042"));
    EXPECT_EQ(ask("spin disable \"sp\" \"c\""), event("spin: changed") + ready("0042"));
    EXPECT_EQ(ask("spin active"), ready("0042"));
    EXPECT_EQ(ask("spin disable"), ready("0042"));
}

TEST_F(RichRequests, Wobble) {
    EXPECT_EQ(ask("wobble 1 -2.5 0 1e3 5 6"), ready("0042"));
    EXPECT_EQ(ask("wobble get"), "0042\tdata 1 -2.5 0 1000 5 6\r\n" + ready("0042"));
}

TEST_F(RichRequests, WhatIsWrongIsRefusedAndChangesNothing) {
    const std::string before = ask("sim state");
    const struct {
        const char* request;
        const char* text;
    } rows[] = {
        {"probe load", "missing argument"},
        {"probe load 1", "missing argument"},
        {"probe load 2 1 1", "syntax invalid"},
        {"probe load 2.9 1", "invalid argument"},
        {"probe load two 1", "invalid argument"},
        {"probe load nan 1", "invalid argument"},
        {"probe load 99999999999999999999 1", "invalid argument"},
        {"probe load -1 1", "invalid probe number"},
        {"probe load 65 1", "invalid probe number"},
        {"probe load 2 9", "invalid tip number"},
        {"probe load 40 1", "undefined probe"},
        {"probe load 2 8", "undefined tip"},
        {"probe change 2 1", "transaction: command unknown"},  // there is no changer
        {"probe unload now", "syntax invalid"},
        {"probe define 5 1 0 0 0", "missing argument"},
        {"probe define 5 1 0 0 0 nan", "invalid argument"},
        {"probe define 5 1 0 0 0 -1", "argument out of range"},
        {"probe define 5 0 0 0 0 1", "invalid tip number"},
        {"probe define 5 1 0 0 0 1 1", "syntax invalid"},
        {"probe delete 5 1", "undefined probe"},
        {"probe delete 1 1", "can't delete active probe"},
        {"probe offset", "no axis specified"},
        {"probe offset \"x\"", "invalid argument"},
        {"probe offset \"c\"=1", "invalid axis"},
        {"probe offset \"x\"=inf", "invalid argument"},
        {"probe list", "missing argument"},
        {"probe list 0", "missing argument"},
        {"probe list 0 0 0", "syntax invalid"},
        {"probe", "transaction: command unknown"},
        {"probe info 1", "syntax invalid"},
        {"probesystem list", "missing argument"},
        {"probesystem list \"a", "syntax invalid"},
        {"probesystem load \"No such\" 1", "unknown probesystem"},
        {"probesystem load \"\" 1", "unknown probesystem"},
        {"probesystem load \"Fixed head\" 2", "undefined probesystem id"},
        {"probesystem load \"Fixed head\" -1", "undefined probesystem id"},
        {"probesystem load \"Fixed head\"", "missing argument"},
        {"probesystem load Fixed head 1", "invalid argument"},
        {"probesystem define \"New\" 1 0 0 0 0 0 0", "probesystem not supported"},
        {"probesystem define \"Optical\" 0 0 0 0 0 0 0", "argument out of range"},
        {"probesystem define \"Optical\" 1 0 0 0 0 0 nan", "invalid argument"},
        {"probesystem define \"Optical\" 1 0 0 0 0 0", "missing argument"},
        {"probesystem delete \"Fixed head\" 7", "undefined probesystem id"},
        {"keypad enable \"w\"", "invalid axis"},
        {"keypad enable \"hc\"", "invalid axis"},
        {"keypad enable \"q\"", "unknown axis"},
        {"keypad enable \"x", "syntax invalid"},
        {"keypad list all", "syntax invalid"},
        {"spin enable", "no axis specified"},
        {"spin enable \"-\"", "unknown axis"},
        {"spin enable \"--sp\"", "unknown axis"},
        {"spin enable \"x\"", "invalid axis"},
        {"spin enable \"sp\" \"-sp\"", "invalid axis"},
        {"spin disable \"-sp\"", "unknown axis"},
        {"wobble", "missing argument"},
        {"wobble 1 2 3 4 5", "missing argument"},
        {"wobble 1 2 3 4 5 nan", "invalid argument"},
        {"wobble 1 2 3 4 5 6 7", "syntax invalid"},
        {"wobble 1 2 3 4 5 six", "invalid argument"},
    };
    for (const auto& row : rows) EXPECT_EQ(ask(row.request), refused("0042", row.text)) << row.request;
    EXPECT_EQ(ask("sim state"), before);
}

TEST_F(RichRequests, TheLockCountsForAllThatChangesSomething) {
    Client other(rig.hub);
    EXPECT_EQ(other.ask("0001\tmachine get"), "0001\tready\r\n");
    for (const char* request :
         {"probe unload", "probe load 2 1", "probe define 5 1 0 0 0 1", "probe delete 2 1",
          "probe offset \"x\"=1", "probesystem load \"Fixed head\" 1", "probesystem unload",
          "probesystem define \"Optical\" 1 0 0 0 0 0 0", "probesystem delete \"Fixed head\" 1",
          "keypad enable", "keypad disable", "spin enable \"sp\"", "spin disable", "wobble 1 2 3 4 5 6"}) {
        EXPECT_EQ(ask(request), refused("0042", "wrong state")) << request;
    }
    for (const char* request :
         {"probe info", "probe list 0 0", "probesystem info", "probesystem type", "wobble get", "keypad list",
          "keypad active", "spin list", "spin active", "sim state"}) {
        EXPECT_EQ(ask(request).find("error"), std::string::npos) << request;
    }
}

}  // namespace
}  // namespace zendrix::sim
