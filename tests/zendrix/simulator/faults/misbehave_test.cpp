#include "faults/misbehave.h"

#include <gtest/gtest.h>

#include "linesplitter.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::plain_machine;
using rig::Rig;

FaultPlan one(const std::string& fault) {
    FaultPlan plan;
    plan.add(fault);
    return plan;
}

// What comes back on the second of three requests.
std::string answer_with(const std::string& fault, rig::FakeTransport* transport = nullptr) {
    Rig rig(plain_machine(), one(fault + "@request:2"));
    EXPECT_EQ(rig.client.ask("0001\tping"), "0001\tready\r\n");
    const std::string answer = rig.client.ask("0002\tget \"x\"");
    if (transport != nullptr) *transport = rig.client.transport;
    EXPECT_EQ(rig.client.ask("0003\tping"), "0003\tready\r\n");
    return answer;
}

TEST(Misbehave, OnAnAnswer) {
    rig::FakeTransport transport;
    EXPECT_EQ(answer_with("close", &transport), "");
    EXPECT_TRUE(transport.closed);
    answer_with("reset", &transport);
    EXPECT_TRUE(transport.was_reset);
    EXPECT_EQ(answer_with("silent", &transport), "");
    EXPECT_TRUE(transport.muted);
    EXPECT_EQ(answer_with("half-line", &transport), "0002\t");
    EXPECT_TRUE(transport.closed);
    EXPECT_EQ(answer_with("slow=70", &transport), "0002\tdata 0\r\n0002\tready\r\n");
    EXPECT_EQ(transport.held.count(), 70);
    EXPECT_EQ(answer_with("garbage"), "\x01\xff{garbage} \x7f\r\n0002\tdata 0\r\n0002\tready\r\n");
    EXPECT_EQ(answer_with("unknown-id"), "2147483647\tdata 1\r\n0002\tdata 0\r\n0002\tready\r\n");
    EXPECT_EQ(answer_with("early-ready"), "0002\tready\r\n0002\tdata 0\r\n0002\tready\r\n");
    EXPECT_EQ(answer_with("gap"), "");
    EXPECT_EQ(answer_with("double"), "0002\tdata 0\r\n0002\tready\r\n0002\tdata 0\r\n0002\tready\r\n");
    EXPECT_GT(answer_with("long-line").size(), wire::max_line);
}

TEST(Misbehave, OnTheHello) {
    Rig rig(plain_machine(), one("garbage@connect:1"));
    rig.client.conversation->greet();
    EXPECT_EQ(rig.client.take(), "\x01\xff{garbage} \x7f\r\n0000\thello \"Plain\" 3.0 simulated\r\n");
}

std::string points_with(const std::string& fault) {
    Rig rig(plain_machine(), one(fault));
    rig.client.ask("0001\tmaster");
    rig.client.ask("0001\tmove \"x\"=20");
    rig.pass(100.0);
    rig.client.take();
    rig.client.ask("0002\tscan \"z\"=4");
    rig.pass(100.0);
    const std::string text = rig.client.take();
    const std::size_t begin = text.find("0002\tpoint");
    return text.substr(begin);
}

TEST(Misbehave, OnAPoint) {
    const std::string end =
        "0000\tevent \"measurement: end\"\r\n0000\tevent \"movement: end\"\r\n0002\tready\r\n";
    EXPECT_EQ(points_with("gap@point:2+2"),
              "0002\tpoint 1 20 0 0\r\n0002\tpoint 3 20 0 2\r\n0002\tpoint 5 20 0 4\r\n" + end);
    EXPECT_EQ(points_with("double@point:5"),
              "0002\tpoint 1 20 0 0\r\n0002\tpoint 2 20 0 1\r\n0002\tpoint 3 20 0 2\r\n"
              "0002\tpoint 4 20 0 3\r\n0002\tpoint 5 20 0 4\r\n0002\tpoint 5 20 0 4\r\n" +
                  end);
    EXPECT_NE(
        points_with("capabilities@point:3")
            .find("0002\tpoint 3 20 0 2\r\n0000\tevent \"capabilities changed\"\r\n0002\tpoint 4 20 0 3\r\n"),
        std::string::npos);
}

TEST(Misbehave, ARefusedRequestIsNotCarriedOut) {
    Rig rig(plain_machine(), one("refuse@move:2"));
    EXPECT_EQ(rig.client.ask("0001\tmove \"x\"=1"), "0001\taccepted\r\n");
    rig.pass(10.0);
    rig.client.take();
    EXPECT_EQ(rig.client.ask("0002\tmove \"x\"=2"), "0002\terror \"internal error\"\r\n0002\tready\r\n");
    rig.pass(10.0);
    EXPECT_EQ(rig.client.ask("0003\tget \"x\""), "0003\tdata 1\r\n0003\tready\r\n");
    EXPECT_EQ(rig.client.ask("0004\tmove \"x\"=2"), "0004\taccepted\r\n");
}

TEST(Misbehave, AWatchLineIsCut) {
    Rig rig(plain_machine(), one("cut@record:2"));
    rig.client.ask("0001\twatch 10 50 \"x\" \"y\" \"speed\"");
    for (const char* line : {"0001\twatch 0 0 10\r\n", "0001\twatch 0 0\r\n", "0001\twatch 0 0 10\r\n"}) {
        rig.client.conversation->send_watch();
        EXPECT_EQ(rig.client.take(), line);
    }
}

TEST(Misbehave, EmergencyInTheMiddleOfAScan) {
    Rig rig(plain_machine(), one("emergency@point:2"));
    rig.client.ask("0001\tmaster");
    rig.client.ask("0001\tmove \"x\"=20");
    rig.pass(100.0);
    rig.client.ask("0002\tscan \"z\"=40");
    rig.pass(1.0);
    EXPECT_TRUE(
        rig.client.take().ends_with("0000\tevent \"measurement: end\"\r\n0000\tevent \"movement: "
                                    "end\"\r\n0002\terror \"machine: emergency\"\r\n"
                                    "0002\tready\r\n0000\tevent \"keypad: emergency active\"\r\n"));
    EXPECT_EQ(rig.client.ask("0003\tmovehome"), "0003\terror \"machine: emergency\"\r\n0003\tready\r\n");
    EXPECT_EQ(rig.client.ask("0004\treset"), "0004\tready\r\n");
    EXPECT_EQ(rig.client.ask("0005\tmovehome"), "0005\taccepted\r\n");
}

}  // namespace
}  // namespace zendrix::sim
