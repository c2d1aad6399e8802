// Blocks over the protocol, without a connection.
#include <gtest/gtest.h>

#include "linesplitter.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::Rig;

std::string refused(const std::string& id, const std::string& text) {
    return id + "\terror \"" + text + "\"\r\n" + id + "\tready\r\n";
}

Rig with_faults(const std::vector<std::string>& faults) {
    FaultPlan plan;
    for (const std::string& fault : faults) plan.add(fault);
    return Rig(rig::plain_machine(), plan);
}

TEST(Blocks, TextComesAsItStands) {
    Rig rig;
    EXPECT_EQ(rig.client.ask("0001\tsend \"a/b\" \"say \\\"hi\\\"\\t\""), "0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0002\treceive \"a/b\""),
              "0002\taccepted\r\n0002\tdata \"say \"hi\"\t\"\r\n0002\tready\r\n");
    EXPECT_EQ(rig.client.ask("0003\treceive a/b"),
              "0003\taccepted\r\n0003\tdata \"say \"hi\"\t\"\r\n0003\tready\r\n");
}

TEST(Blocks, WhatWouldBreakALineComesAsBase64) {
    const char* const breaking[] = {"\\r", "\\n", "\\0"};
    for (const char* const text : breaking) {
        Rig rig;
        rig.client.ask(std::string("0001\tsend \"a\" \"AB") + text + "\"");
        EXPECT_EQ(rig.client.ask("0002\treceive \"a\"").substr(0, 32), "0002\taccepted\r\n0002\tdata base64 ")
            << text;
    }
    Rig rig;
    rig.client.ask("0001\tsend \"a\" \"AB\\n\"");
    EXPECT_EQ(rig.client.ask("0002\treceive \"a\""),
              "0002\taccepted\r\n0002\tdata base64 \"QUIK\"\r\n0002\tready\r\n");
}

TEST(Blocks, AnEmptyBlockHasNoLines) {
    Rig rig;
    EXPECT_EQ(rig.client.ask("0001\tsend \"a\" \"\""), "0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0002\treceive \"a\""), "0002\taccepted\r\n0002\tready\r\n");
}

TEST(Blocks, ABlockComesInManyLines) {
    Rig rig;
    rig.hub.blocks().put("text", std::string(40000, 'x'));
    EXPECT_EQ(rig.client.ask("0002\treceive \"text\""),
              "0002\taccepted\r\n0002\tdata \"" + std::string(16384, 'x') + "\"\r\n0002\tdata \"" +
                  std::string(16384, 'x') + "\"\r\n0002\tdata \"" + std::string(40000 - 2 * 16384, 'x') +
                  "\"\r\n0002\tready\r\n");
    rig.hub.blocks().put("bytes", std::string(12289, '\0'));
    EXPECT_EQ(rig.client.ask("0003\treceive \"bytes\""), "0003\taccepted\r\n0003\tdata base64 \"" +
                                                             std::string(16384, 'A') +
                                                             "\"\r\n0003\tdata \"AA==\"\r\n0003\tready\r\n");
}

TEST(Blocks, ComeInParts) {
    Rig rig;
    EXPECT_EQ(rig.client.ask("0001\tsend begin \"a\" 6"), "0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0002\tsend part 1 \"one\""), "0002\tready\r\n");
    EXPECT_EQ(rig.client.ask("0003\treceive \"a\""), refused("0003", "invalid argument"));
    EXPECT_EQ(rig.client.ask("0004\tsend part 1 \"two\""), "0004\tready\r\n");
    EXPECT_EQ(*rig.hub.blocks().find("a"), "onetwo");
    EXPECT_EQ(rig.client.ask("0005\tsend part 1 \"\""), refused("0005", "wrong state"));
}

TEST(Blocks, PartsOfSeveralKeepApart) {
    Rig rig;
    rig.client.ask("0001\tsend begin \"a\" 2");
    rig.client.ask("0002\tsend begin \"b\" 2");
    rig.client.ask("0003\tsend part 1 \"a\"");
    rig.client.ask("0004\tsend part 2 \"b\"");
    rig.client.ask("0005\tsend part 1 \"A\"");
    rig.client.ask("0006\tsend part 2 \"B\"");
    EXPECT_EQ(*rig.hub.blocks().find("a"), "aA");
    EXPECT_EQ(*rig.hub.blocks().find("b"), "bB");
}

TEST(Blocks, TooMuchEndsATransfer) {
    Rig rig;
    rig.client.ask("0001\tsend begin \"a\" 2");
    EXPECT_EQ(rig.client.ask("0002\tsend part 1 \"abc\""), refused("0002", "argument out of range"));
    EXPECT_EQ(rig.client.ask("0003\tsend part 1 \"ab\""), refused("0003", "wrong state"));
}

TEST(Blocks, AFifthTransferTakesThePlaceOfTheOldest) {
    Rig rig;
    for (int id = 1; id <= 5; ++id) {
        EXPECT_EQ(rig.client.ask("000" + std::to_string(id) + "\tsend begin \"a\" 1"),
                  "000" + std::to_string(id) + "\tready\r\n");
    }
    EXPECT_EQ(rig.client.ask("0006\tsend part 1 \"x\""), refused("0006", "wrong state"));
    EXPECT_EQ(rig.client.ask("0007\tsend part 2 \"x\""), "0007\tready\r\n");
}

TEST(Blocks, OneClientsPartsAreNotAnothers) {
    Rig rig;
    rig::Client other(rig.hub);
    rig.client.ask("0001\tsend begin \"a\" 1");
    EXPECT_EQ(other.ask("0002\tsend part 1 \"x\""), refused("0002", "wrong state"));
    EXPECT_EQ(rig.client.ask("0002\tsend part 1 \"x\""), "0002\tready\r\n");
    EXPECT_EQ(other.ask("0003\treceive \"a\""), "0003\taccepted\r\n0003\tdata \"x\"\r\n0003\tready\r\n");
}

TEST(Blocks, WhatCannotBeKeptIsRefused) {
    MachineDescription machine = rig::plain_machine();
    machine.blocks.longest = 4;
    machine.blocks.total = 6;
    Rig rig(machine);
    EXPECT_EQ(rig.client.ask("0001\tsend \"\" \"x\""), refused("0001", "invalid argument"));
    EXPECT_EQ(rig.client.ask("0002\tsend \"" + std::string(10240, 'x') + "\" \"x\""),
              refused("0002", "argument out of range"));
    EXPECT_EQ(rig.client.ask("0003\tsend \"a\" \"12345\""), refused("0003", "argument out of range"));
    EXPECT_EQ(rig.client.ask("0004\tsend begin \"a\" 5"), refused("0004", "argument out of range"));
    EXPECT_EQ(rig.client.ask("0005\tsend begin \"a\" 0"), refused("0005", "invalid argument"));
    EXPECT_EQ(rig.client.ask("0006\tsend begin \"a\" 4"), "0006\tready\r\n");
    EXPECT_EQ(rig.client.ask("0007\tsend \"b\" \"123\""), refused("0007", "buffer overrun"));
    EXPECT_EQ(rig.client.ask("0008\tsend \"blocks.list\" \"x\""), refused("0008", "invalid argument"));
    // A client that goes leaves no room taken behind.
    rig.client.conversation.reset();
    rig::Client next(rig.hub);
    EXPECT_EQ(next.ask("0001\tsend \"b\" \"1234\""), "0001\tready\r\n");
}

TEST(Blocks, TheListIsABlock) {
    Rig rig;
    EXPECT_EQ(rig.client.ask("0001\treceive \"blocks.list\""), "0001\taccepted\r\n0001\tready\r\n");
    rig.client.ask("0002\tsend \"a\" \"x\"");
    EXPECT_EQ(rig.client.ask("0003\treceive \"blocks.list\""),
              "0003\taccepted\r\n0003\tdata base64 \"ImEiIDEK\"\r\n0003\tready\r\n");  // "a" 1
}

TEST(Blocks, ALockKeepsOthersFromSendingAndReceiving) {
    Rig rig;
    rig::Client other(rig.hub);
    other.ask("0001\tmachine get");
    for (const char* const line :
         {"send \"a\" \"x\"", "send begin \"a\" 1", "send part 1 \"x\"", "receive \"a\""})
        EXPECT_EQ(rig.client.ask(std::string("0002\t") + line), refused("0002", "wrong state")) << line;
}

TEST(Blocks, ASlowClientHoldsItsOwnBlock) {
    Rig rig;
    rig::Client other(rig.hub);
    rig.hub.blocks().put("a", std::string(40000, 'x'));
    rig.client.transport.congested = true;
    EXPECT_EQ(rig.client.ask("0001\treceive \"a\""), "0001\taccepted\r\n");
    EXPECT_EQ(rig.client.ask("0002\tping"), "0002\tready\r\n");
    EXPECT_EQ(rig.client.ask("0001\tping"), "0000\terror \"transaction: t-id invalid\"\r\n");
    EXPECT_NE(other.ask("0001\treceive \"a\"").find("0001\tready"), std::string::npos);
    // The block is as it was asked for, whatever becomes of it meanwhile.
    other.ask("0002\tsend \"a\" \"new\"");
    rig.client.transport.congested = false;
    rig.client.conversation->go_on();
    EXPECT_EQ(rig.client.take().size(),
              40000 + 3 * std::string("0001\tdata \"\"\r\n").size() + std::string("0001\tready\r\n").size());
}

TEST(Blocks, AnAbortEndsABlock) {
    Rig rig;
    rig.hub.blocks().put("a", "x");
    rig.client.transport.congested = true;
    rig.client.ask("0001\treceive \"a\"");
    EXPECT_EQ(rig.client.ask("0002\tabort 1"), "0001\terror \"aborted\"\r\n0001\tready\r\n0002\tready\r\n");
    EXPECT_EQ(rig.client.ask("0003\tabort 1"), refused("0003", "t-id unused"));
}

TEST(Blocks, TakeNoMotionAway) {
    Rig rig;
    rig.client.ask("0001\tmove \"x\"=10");
    rig.hub.blocks().put("a", "x");
    EXPECT_EQ(rig.client.ask("0002\treceive \"a\""), "0002\taccepted\r\n0002\tdata \"x\"\r\n0002\tready\r\n");
    rig.pass(100.0);
    EXPECT_EQ(rig.client.take(), "0001\tready\r\n");
}

std::string receive_with(const std::string& fault, const std::string& content) {
    Rig rig = with_faults({fault});
    rig.hub.blocks().put("a", content);
    return rig.client.ask("0001\treceive \"a\"").substr(std::string("0001\taccepted\r\n").size());
}

TEST(Blocks, FaultsSpoilALine) {
    EXPECT_EQ(receive_with("short@block-line:1", "AB\n"), "0001\tdata base64\r\n0001\tready\r\n");
    EXPECT_EQ(receive_with("short@block-line:1", "AB"), "0001\tdata\r\n0001\tready\r\n");
    EXPECT_EQ(receive_with("unquoted@block-line:1", "AB"), "0001\tdata AB\r\n0001\tready\r\n");
    EXPECT_EQ(receive_with("unquoted@block-line:1", "AB\n"), "0001\tdata base64 QUIK\r\n0001\tready\r\n");
    EXPECT_EQ(receive_with("wrong-base64@block-line:1", "AB\n"),
              "0001\tdata base64 \"!UIK\"\r\n0001\tready\r\n");
    const std::string line = "0001\tdata \"" + std::string(16384, 'x') + "\"\r\n";
    EXPECT_EQ(receive_with("gap@block-line:2", std::string(40000, 'x')),
              line + "0001\tdata \"" + std::string(40000 - 2 * 16384, 'x') + "\"\r\n0001\tready\r\n");
}

TEST(Blocks, TheServerStopsInTheMiddle) {
    for (const std::string fault : {"close", "half-line", "silent", "reset"}) {
        Rig rig = with_faults({fault + "@block-line:2"});
        rig.hub.blocks().put("a", std::string(40000, 'x'));
        rig.client.ask("0001\treceive \"a\"");
        const rig::FakeTransport& transport = rig.client.transport;
        EXPECT_TRUE(transport.closed || transport.muted || transport.was_reset) << fault;
    }
}

TEST(Blocks, FirmwareIsRefusedWhileTheMachineIsBusy) {
    Rig rig;
    rig.client.ask("0001\tmove \"x\"=10");
    EXPECT_EQ(rig.client.ask("0002\tsend \"firmware.config\" \"x\""), refused("0002", "wrong state"));
    EXPECT_EQ(rig.client.ask("0003\tsend begin \"x/firmware.config.old\" 1"), refused("0003", "wrong state"));
    EXPECT_EQ(rig.client.ask("0004\tsend \"firmware.conf\" \"x\""), "0004\tready\r\n");
    EXPECT_FALSE(rig.hub.is_leaving());
    rig.pass(100.0);
    EXPECT_EQ(rig.client.take(), "0001\tready\r\n");
    EXPECT_EQ(rig.client.ask("0005\tsend begin \"x/firmware.config.old\" 1"), "0005\tready\r\n");
    rig.client.ask("0006\tmove \"x\"=0");
    EXPECT_EQ(rig.client.ask("0007\tsend part 5 \"x\""), refused("0007", "wrong state"));
    EXPECT_FALSE(rig.hub.is_leaving());
    EXPECT_FALSE(rig.hub.blocks().blocks().contains("x/firmware.config.old"));
}

TEST(Blocks, FirmwareMakesAnotherMachineOfIt) {
    const struct {
        const char* before;
        const char* after;
    } rows[] = {{"1.0", "1.1"}, {"2.9", "2.10"},  {"R7 beta", "R8 beta"},
                {"", " 2"},     {"new", "new 2"}, {"99999999999", "1"}};
    for (const auto& row : rows) {
        MachineDescription machine = rig::plain_machine();
        machine.revision = row.before;
        Rig rig(machine);
        rig.client.ask("0001\tset \"x\"=5");
        EXPECT_EQ(rig.client.ask("0002\tsend \"firmware.config\" \"x\""), "0002\tready\r\n");
        EXPECT_TRUE(rig.hub.is_leaving());
        rig.client.conversation.reset();
        rig.hub.restart();
        EXPECT_FALSE(rig.hub.is_leaving());
        EXPECT_EQ(rig.hub.machine().description().revision, row.after);
        EXPECT_EQ(rig.hub.machine().value("x"), 0.0);
        EXPECT_EQ(*rig.hub.blocks().find("firmware.config"), "x");
    }
}

}  // namespace
}  // namespace zendrix::sim
