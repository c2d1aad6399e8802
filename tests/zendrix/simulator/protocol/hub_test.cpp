// What clients share: motions and their ends, events, the lock.
#include "protocol/hub.h"

#include <gtest/gtest.h>

#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::Client;
using rig::Rig;

TEST(Hub, AMotionIsAcceptedAndReadyAtItsEnd) {
    Rig rig;
    rig.client.ask("0001\tmaster");
    EXPECT_EQ(rig.client.ask("0007\tmove \"x\"=20"), "0007\taccepted\r\n");
    rig.pass(1.0);
    EXPECT_EQ(rig.client.take(), "0000\tevent \"movement: begin\"\r\n");
    EXPECT_EQ(rig.client.ask("0008\tget \"x\""), "0008\tdata 5\r\n0008\tready\r\n");
    rig.pass(10.0);
    EXPECT_EQ(rig.client.take(), "0000\tevent \"movement: end\"\r\n0007\tready\r\n");
}

TEST(Hub, AScanSendsItsPointsBetweenItsEvents) {
    Rig rig;
    rig.client.ask("0001\tmaster");
    rig.client.ask("0002\tmove \"x\"=20");
    rig.pass(100.0);
    rig.client.take();
    EXPECT_EQ(rig.client.ask("0003\tscan \"z\"=2"), "0003\taccepted\r\n");
    rig.pass(100.0);
    EXPECT_EQ(rig.client.take(),
              "0000\tevent \"movement: begin\"\r\n"
              "0000\tevent \"probe: contact\"\r\n"
              "0000\tevent \"measurement begin\"\r\n"
              "0003\tpoint 1 20 0 0\r\n0003\tpoint 2 20 0 1\r\n0003\tpoint 3 20 0 2\r\n"
              "0000\tevent \"measurement: end\"\r\n"
              "0000\tevent \"movement: end\"\r\n"
              "0003\tready\r\n");
}

TEST(Hub, EventsAreForMastersOnly) {
    Rig rig;
    Client other(rig.hub);
    other.ask("0001\tmaster");
    rig.client.ask("0007\tmove \"x\"=20");
    rig.pass(100.0);
    EXPECT_EQ(rig.client.take(), "0007\tready\r\n");
    EXPECT_EQ(other.take(), "0000\tevent \"movement: begin\"\r\n0000\tevent \"movement: end\"\r\n");
}

TEST(Hub, AbortEndsTheMotionWithItsError) {
    Rig rig;
    rig.client.ask("0007\tmove \"x\"=90");
    rig.pass(3.0);
    EXPECT_EQ(rig.client.ask("0008\tabort 8"), "0008\terror \"t-id unused\"\r\n0008\tready\r\n");
    EXPECT_EQ(rig.client.ask("0009\tabort 7"), "0009\tready\r\n");
    EXPECT_EQ(rig.client.ask("0010\tmove \"x\"=0"), "0010\terror \"wrong state\"\r\n0010\tready\r\n");
    rig.pass(1.0);
    EXPECT_EQ(rig.client.take(), "0007\terror \"aborted\"\r\n0007\tready\r\n");
    EXPECT_EQ(rig.client.ask("0011\tabort 7"), "0011\terror \"t-id unused\"\r\n0011\tready\r\n");
}

TEST(Hub, NobodyAbortsForOthers) {
    Rig rig;
    Client other(rig.hub);
    rig.client.ask("0007\tmove \"x\"=90");
    EXPECT_EQ(other.ask("0001\tabort 7"), "0001\terror \"t-id unused\"\r\n0001\tready\r\n");
}

TEST(Hub, ALostClientsMotionStopsAndItsLockIsFree) {
    Rig rig;
    rig.client.ask("0001\tmachine get");
    rig.client.ask("0007\tmove \"x\"=90");
    rig.pass(3.0);
    Client other(rig.hub);
    EXPECT_EQ(other.ask("0001\tmachine get now"), "0001\terror \"wrong state\"\r\n0001\tready\r\n");
    rig.client.conversation.reset();
    EXPECT_EQ(other.ask("0002\tmachine get now"), "0002\tready\r\n");
    rig.pass(1.0);
    EXPECT_FALSE(rig.hub.machine().is_busy());
    EXPECT_NEAR(rig.hub.machine().value("x"), 30.0, 1e-9);
    EXPECT_EQ(other.ask("0003\tmove \"x\"=0"), "0003\taccepted\r\n");
}

TEST(Hub, TheLockKeepsOthersFromChangingThings) {
    Rig rig;
    Client other(rig.hub);
    EXPECT_EQ(rig.client.ask("0001\tmachine get"), "0001\tready\r\n");
    for (const char* request : {"move \"x\"=1", "set \"speed\"=1", "reset", "movebase \"x\"", "movehome"}) {
        EXPECT_EQ(other.ask(std::string("0001\t") + request),
                  "0001\terror \"wrong state\"\r\n0001\tready\r\n");
    }
    EXPECT_EQ(other.ask("0002\tget \"x\""), "0002\tdata 0\r\n0002\tready\r\n");
    EXPECT_EQ(other.ask("0003\tmachine release"), "0003\terror \"wrong state\"\r\n0003\tready\r\n");
    EXPECT_EQ(rig.client.ask("0002\tmachine release"), "0002\tready\r\n");
    EXPECT_EQ(other.ask("0004\tmove \"x\"=1"), "0004\taccepted\r\n");
}

TEST(Hub, TheLockCounts) {
    Rig rig;
    Client other(rig.hub);
    rig.client.ask("0001\tmachine get");
    rig.client.ask("0002\tmachine get now");
    rig.client.ask("0003\tmachine release");
    EXPECT_EQ(other.ask("0001\tmachine get now"), "0001\terror \"wrong state\"\r\n0001\tready\r\n");
    rig.client.ask("0004\tmachine release");
    EXPECT_EQ(other.ask("0001\tmachine get now"), "0001\tready\r\n");
}

TEST(Hub, WhoeverWaitsLongestGetsTheLock) {
    Rig rig;
    Client second(rig.hub);
    Client third(rig.hub);
    rig.client.ask("0001\tmachine get");
    EXPECT_EQ(second.ask("0005\tmachine get"), "");
    EXPECT_EQ(third.ask("0006\tmachine get"), "");
    EXPECT_EQ(second.transport.lock_waits, std::vector<std::int64_t>{5});
    rig.client.ask("0002\tmachine release");
    EXPECT_EQ(second.take(), "0005\tready\r\n");
    EXPECT_EQ(third.take(), "");
    second.conversation.reset();
    EXPECT_EQ(third.take(), "0006\tready\r\n");
}

TEST(Hub, PatienceWithALockEnds) {
    Rig rig;
    Client other(rig.hub);
    rig.client.ask("0001\tmachine get");
    other.ask("0005\tmachine get");
    other.ask("0006\tmachine get");
    other.conversation->lock_timed_out(5);
    EXPECT_EQ(other.take(), "0005\terror \"wrong state\"\r\n0005\tready\r\n");
    EXPECT_EQ(other.ask("0007\tabort 6"), "0006\terror \"aborted\"\r\n0006\tready\r\n0007\tready\r\n");
    rig.client.ask("0002\tmachine release");
    EXPECT_EQ(other.take(), "");
    other.conversation->lock_timed_out(6);
    EXPECT_EQ(other.take(), "");
}

TEST(Hub, OpenRequestsAreBounded) {
    Rig rig;
    Client other(rig.hub);
    rig.client.ask("0001\tmachine get");
    for (int id = 1001; id <= 1064; ++id) EXPECT_EQ(other.ask(std::to_string(id) + "\tmachine get"), "");
    EXPECT_EQ(other.ask("2000\tmachine get"), "2000\terror \"buffer overrun\"\r\n2000\tready\r\n");
}

TEST(Hub, WatchLinesHoldTheValues) {
    Rig rig;
    EXPECT_EQ(rig.client.ask("0005\twatch 100 50 \"x\" \"speed\""), "0005\tready\r\n");
    EXPECT_EQ(rig.client.transport.watch.count(), 100);
    rig.client.ask("0006\tmove \"x\"=20");
    rig.clock.advance(1.0);
    rig.client.conversation->send_watch();
    EXPECT_EQ(rig.client.take(), "0005\twatch 5 10\r\n");
    rig.client.transport.congested = true;
    rig.client.conversation->send_watch();
    EXPECT_EQ(rig.client.take(), "");
    rig.client.transport.congested = false;
    EXPECT_EQ(rig.client.ask("0007\twatch -1 50 \"x\""), "0007\tready\r\n");
    EXPECT_EQ(rig.client.transport.watch.count(), 1);
    EXPECT_EQ(rig.client.ask("0008\twatch 0 0"), "0008\tready\r\n");
    EXPECT_EQ(rig.client.transport.watch.count(), 0);
    rig.client.conversation->send_watch();
    EXPECT_EQ(rig.client.take(), "");
}

TEST(Hub, ASlowReaderHoldsItsOwnScan) {
    Rig rig;
    rig.client.ask("0001\tmove \"x\"=20");
    rig.pass(100.0);
    rig.client.ask("0002\tscan \"z\"=50");
    rig.client.transport.congested = true;
    rig.client.take();
    rig.pass(100.0);
    EXPECT_EQ(rig.client.take(), "");
    EXPECT_TRUE(rig.hub.machine().is_busy());
    rig.client.transport.congested = false;
    rig.pass(100.0);
    const std::string points = rig.client.take();
    EXPECT_NE(points.find("0002\tpoint 1 "), std::string::npos);
    EXPECT_NE(points.find("0002\tpoint 51 "), std::string::npos);
    EXPECT_TRUE(points.ends_with("0002\tready\r\n"));
}

TEST(Hub, HaltStopsWithoutAWay) {
    Rig rig;
    rig.client.ask("0007\tmove \"x\"=90");
    rig.pass(3.0);
    rig.hub.halt();
    EXPECT_EQ(rig.client.take(), "0007\terror \"aborted\"\r\n0007\tready\r\n");
    EXPECT_FALSE(rig.hub.machine().is_busy());
}

TEST(Hub, CapabilitiesChangedReachesMasters) {
    Rig rig;
    rig.client.ask("0001\tmaster");
    rig.hub.raise(Event::capabilities_changed);
    EXPECT_EQ(rig.client.take(), "0000\tevent \"capabilities changed\"\r\n");
}

}  // namespace
}  // namespace zendrix::sim
