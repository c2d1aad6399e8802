// A machine at a serial line in software that goes away and comes back with another firmware.
#include <gtest/gtest.h>

#include "net/restarting.h"
#include "net/serialclient.h"

namespace zendrix::sim {
namespace {

using restarting::a_while;
using restarting::expect_revision;
using restarting::hello;
using restarting::Running;

TEST(FirmwarePosix, AtASerialLineTheMachineIsSilentForAWhile) {
    Running running(Road::terminal);
    SerialClient line(running.server.place());
    line.say("0000\thello");
    ASSERT_TRUE(line.reaches(hello));
    line.say("0001\tsend \"firmware.config\" \"new\"");
    EXPECT_EQ(line.line(), "0001\tready");
    line.say("0002\tping");
    line.say("0000\thello");
    EXPECT_EQ(line.line(a_while), std::nullopt);
    running.pass(2.1);
    line.say("0003\tping");
    line.say("0000\thello");
    EXPECT_EQ(line.line(), "");
    EXPECT_EQ(line.line(), hello);
    expect_revision(line, "0001", "1.1");
}

}  // namespace
}  // namespace zendrix::sim
