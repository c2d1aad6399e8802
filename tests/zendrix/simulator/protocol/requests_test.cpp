// Requests in, lines out: what stands in docs/protocol.md.
#include "protocol/requests.h"

#include <gtest/gtest.h>

#include "messagecatalogue.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::Rig;

// The lines of a refusal.
std::string refused(const std::string& id, const char* text) {
    return id + "\terror \"" + text + "\"\r\n" + id + "\tready\r\n";
}

TEST(Requests, EveryOneIsAnsweredWithItsLines) {
    const struct {
        const char* line;
        const char* answer;
    } rows[] = {
        {"0001\tmachine name", "0001\tdata \"Plain\"\r\n0001\tready\r\n"},
        {"0002\tmachine revision", "0002\tdata \"1.0\"\r\n0002\tready\r\n"},
        {"0003\tmachine serial", "0003\tdata \"SIM-0000\"\r\n0003\tready\r\n"},
        {"0004\tping", "0004\tready\r\n"},
        {"12345\tping", "12345\tready\r\n"},
        {"2147483647\tping", "2147483647\tready\r\n"},
        {"0005\tcomponents", "0005\tready\r\n"},
        {"0006\tcapabilities",
         "0006\tdata \"c\" 0 0 0 0 90 90 0.000001\r\n0006\tdata \"x\" 1 -100 100 0 100 10 0.000001\r\n"
         "0006\tdata \"y\" 1 -100 100 0 100 10 0.000001\r\n0006\tdata \"z\" 1 -100 100 0 100 10 0.000001\r\n"
         "0006\tready\r\n"},
        {"0007\tget \"x\" \"speed\" \"x\" \"init\"", "0007\tdata 0 10 0 1\r\n0007\tready\r\n"},
        {"0008\tget x", "0008\tdata 0\r\n0008\tready\r\n"},
        {"0009\tget", "0009\tdata\r\n0009\tready\r\n"},
        {"0010\tmoveaxis x y ", "0010\tdata 1\r\n0010\tready\r\n"},
        {"0011\tmovelimitaxis c ", "0011\tdata 0\r\n0011\tready\r\n"},
        {"0012\tscanaxis \"x\" \"c\"", "0012\tdata 1\r\n0012\tready\r\n"},
        {"0013\tmovezeroaxis x", "0013\tdata 1\r\n0013\tready\r\n"},
        {"0014\tmovebase \"x\" \"y\"", "0014\tready\r\n"},
        {"0015\tscanbase \"x\"", "0015\tready\r\n"},
        {"0016\tset \"speed\"=5 \"x\"=2.5", "0016\taccepted\r\n0016\tready\r\n"},
        {"0017\tget \"x\" \"speed\"", "0017\tdata 2.5 5\r\n0017\tready\r\n"},
        {"0018\tscandata \"x\" \"time\"", "0018\taccepted\r\n0018\tready\r\n"},
        {"0019\tmodulo \"c\"", "0019\tready\r\n"},
        {"0020\treset", "0020\tready\r\n"},
        {"0021\tmaster", "0021\tready\r\n"},
    };
    Rig rig;
    for (const auto& row : rows) EXPECT_EQ(rig.client.ask(row.line), row.answer) << row.line;
}

TEST(Requests, WhatIsWrongIsRefusedByTheCatalogue) {
    const struct {
        const char* request;
        const char* text;
    } rows[] = {
        {"", "transaction: command missing or invalid"},
        {"   ", "transaction: command missing or invalid"},
        {"\"ping\"", "transaction: command missing or invalid"},
        {"pong", "transaction: command unknown"},
        {"machine", "transaction: command unknown"},
        {"init list", "transaction: command unknown"},  // this machine has nothing to list
        {"keypad list", "transaction: command unknown"},
        {"PING", "transaction: command unknown"},
        {"ping 1", "syntax invalid"},
        {"machine name x", "syntax invalid"},
        {"get \"x", "syntax invalid"},
        {"get \"nosuch\"", "unknown axis"},
        {"get \"\"", "unknown axis"},
        {"get \"x\\0\"", "unknown axis"},
        {"get \"a \\\"quoted\\\" \\r\\n name\"", "unknown axis"},
        {"moveaxis", "no axis specified"},
        {"move", "no axis specified"},
        {"move \"x\"", "missing argument"},
        {"move \"q\"=1", "unknown axis"},
        {"move \"speed\"=1", "invalid axis"},
        {"move \"x\"=1 \"x\"=2", "invalid axis"},
        {"move \"x\"=nan", "invalid argument"},
        {"move \"x\"=inf", "invalid argument"},
        {"move \"x\"=101", "argument out of range"},
        {"move \"x\"=", "syntax invalid"},
        {"move \"x\"=one", "syntax invalid"},
        {"move \"x\"=1 ;", "syntax invalid"},
        {"movepoly", "missing argument"},
        {"movepoly x", "invalid argument"},
        {"movepoly -1 ;", "invalid argument"},
        {"movepoly 2 \"x\"=1 ;", "invalid argument"},
        {"movepoly 0", "no axis specified"},
        {"movepoly 1 ;", "no axis specified"},
        {"movecircle 0 0 0 10 0", "missing argument"},
        {"movecircle 0 0 0 ten 0 360 0", "invalid argument"},
        {"movecircle 0 0 0 nan 0 360 0", "invalid argument"},
        {"movecircle 0 0 0 101 0 360 0", "argument out of range"},
        {"movecone 0 0 0 10 0 360 0 5", "missing argument"},
        {"movehome now", "syntax invalid"},
        {"scan \"x\"", "missing argument"},
        {"scandata \"nosuch\"", "unknown axis"},
        {"set", "no axis specified"},
        {"set \"x\"", "invalid argument"},
        {"set \"x\"+=1", "invalid argument"},
        {"set \"speed\"=-1", "argument out of range"},
        {"modulo \"x\"", "invalid axis"},
        {"watch", "missing argument"},
        {"watch 10 50", "no axis specified"},
        {"watch 10 50 \"q\"", "unknown axis"},
        {"watch -2 50 \"x\"", "invalid argument"},
        {"abort", "missing argument"},
        {"abort 7", "t-id unused"},
        {"abort zero", "invalid argument"},
        {"machine get later", "syntax invalid"},
        {"machine release", "wrong state"},
        {"capabilities some", "syntax invalid"},
        {"wobble get", "transaction: command unknown"},  // nor a wobble
        {"keypad enable \"x\"", "transaction: command unknown"},
        {"probe load 1 1", "transaction: command unknown"},  // one probe for good
        {"probesystem list \"\"", "transaction: command unknown"},
        {"receive \"a\"", "invalid argument"},
        {"receive", "missing argument"},
        {"receive \"a\" \"b\"", "syntax invalid"},
        {"send", "missing argument"},
        {"send \"a\"", "missing argument"},
        {"send \"a\" \"b\" \"c\"", "syntax invalid"},
        {"send begin \"a\"", "missing argument"},
        {"send begin \"a\" -1", "invalid argument"},
        {"send part 7 \"a\"", "wrong state"},
        {"send part \"a\"", "invalid argument"},
    };
    Rig rig;
    for (const auto& row : rows) {
        EXPECT_EQ(rig.client.ask(std::string("0042\t") + row.request), refused("0042", row.text))
            << row.request;
    }
    EXPECT_EQ(rig.client.ask("0043\tping"), "0043\tready\r\n");
}

TEST(Requests, WithoutAUsableIdTheErrorBelongsToNoRequest) {
    const struct {
        const char* line;
        const char* answer;
    } rows[] = {
        {"ping", "0000\terror \"transaction: t-id missing\"\r\n"},
        {"", "0000\terror \"transaction: t-id missing\"\r\n"},
        {"\xff\xfe\x01", "0000\terror \"transaction: t-id missing\"\r\n"},
        {"0001 ping", "0000\terror \"transaction: t-id invalid\"\r\n"},
        {"0000\tping", "0000\terror \"transaction: t-id invalid\"\r\n"},
        {"2147483648\tping", "0000\terror \"transaction: t-id invalid\"\r\n"},
        {"99999999999999999999\tping", "0000\terror \"transaction: t-id invalid\"\r\n"},
    };
    Rig rig;
    for (const auto& row : rows) EXPECT_EQ(rig.client.ask(row.line), row.answer) << row.line;
}

TEST(Requests, AnOpenIdIsNotTakenTwice) {
    Rig rig;
    EXPECT_EQ(rig.client.ask("0007\tmove \"x\"=10"), "0007\taccepted\r\n");
    EXPECT_EQ(rig.client.ask("0007\tping"), "0000\terror \"transaction: t-id invalid\"\r\n");
    rig.pass(100.0);
    EXPECT_EQ(rig.client.take(), "0007\tready\r\n");
    EXPECT_EQ(rig.client.ask("0007\tping"), "0007\tready\r\n");
}

TEST(Requests, AnOverLongLineIsRefused) {
    Rig rig;
    rig.client.conversation->over_long_request("0009\tget \"xxxxxxxx");
    EXPECT_EQ(rig.client.take(), refused("0009", "buffer overrun"));
    rig.client.conversation->over_long_request("xxxxxxxxxxxxxxx");
    EXPECT_EQ(rig.client.take(), "0000\terror \"buffer overrun\"\r\n");
}

TEST(Requests, ALongNameIsJustUnknown) {
    Rig rig;
    EXPECT_EQ(rig.client.ask("0009\tget \"" + std::string(100000, 'x') + "\""),
              refused("0009", "unknown axis"));
}

TEST(Requests, HelloSaysWhatThisIs) {
    Rig rig;
    rig.client.conversation->greet();
    EXPECT_EQ(rig.client.take(), "0000\thello \"Plain\" 3.0 simulated\r\n");
}

// The answer to `commands` and what is really answered are the same.
TEST(Requests, CommandsListsWhatThisMachineCan) {
    const MachineDescription machines[] = {rig::plain_machine(), read_machine(MACHINES_DIR "/minimal.ini"),
                                           read_machine(MACHINES_DIR "/rich.ini"), builtin_machine()};
    for (const MachineDescription& machine : machines) {
        Rig rig(machine);
        const std::string words = rig.client.ask("0001\tcommands");
        for (const Request& request : requests()) {
            const std::string line = "0001\tdata \"" + std::string(request.words) + "\"\r\n";
            const bool is_listed = words.find(line) != std::string::npos;
            const std::string answer = rig.client.ask("0002\t" + std::string(request.words) + " \"\"");
            const bool is_known = answer.find("command unknown") == std::string::npos;
            EXPECT_EQ(is_listed, is_known) << machine.name << ": " << request.words;
        }
    }
}

TEST(Requests, RichMachineAnswersItsLists) {
    Rig rig(read_machine(MACHINES_DIR "/rich.ini"));
    EXPECT_EQ(rig.client.ask("0001\tspin list"), "0001\tdata \"c\"\r\n0001\tdata \"sp\"\r\n0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0001\tspin active"), "0001\tdata \"-sp\" 36\r\n0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0001\tkeypad active"), "0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0001\tkeypad list").find("\"hc\""), std::string::npos);
    EXPECT_NE(rig.client.ask("0001\tkeypad list +inactive").find("\"hc\""), std::string::npos);
    EXPECT_EQ(rig.client.ask("0001\tinit active"), "0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0001\toptions"),
              "0001\tdata \"scanning\" \"1.0\"\r\n0001\tdata \"second column\" \"0.9\"\r\n"
              "0001\tdata \"simulation\" \"1.0\"\r\n0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0002\tmove \"x\"=1"), refused("0002", "machine: not initialized"));
    EXPECT_EQ(rig.client.ask("0003\tinit \"x\""), "0003\taccepted\r\n");
    rig.pass(1000.0);
    EXPECT_EQ(rig.client.take(), "0003\tready\r\n");
    EXPECT_EQ(rig.client.ask("0001\tinit active"), "0001\tdata \"x\"\r\n0001\tready\r\n");
    const std::string all = rig.client.ask("0001\tcapabilities all");
    EXPECT_NE(all.find("0001\tdata \"ka\" 2 0 270 0 60 120 0 0 90 180 270\r\n"), std::string::npos);
    EXPECT_NE(all.find("0001\tdata \"hc\" 4 "), std::string::npos);
    EXPECT_NE(all.find("0001\tdata \"probe\" 3 0 64 1 0 0 1\r\n0001\tdata \"tip\" 3 0 8 1 0 0 1\r\n"),
              std::string::npos);
    EXPECT_EQ(rig.client.ask("0001\tcapabilities").find("\"probe\""), std::string::npos);
}

}  // namespace
}  // namespace zendrix::sim
