// A machine that goes away and comes back with another firmware, as its clients see it.
#include <gtest/gtest.h>

#include "net/lineclient.h"
#include "net/restarting.h"

namespace zendrix::sim {
namespace {

using restarting::a_while;
using restarting::expect_revision;
using restarting::hello;
using restarting::Running;

TEST(Firmware, SendsEveryClientAwayAndComesBack) {
    Running running;
    LineClient sender(running.port);
    LineClient other(running.port);
    EXPECT_EQ(sender.line(), hello);
    EXPECT_EQ(other.line(), hello);
    expect_revision(sender, "0001", "1.0");
    sender.send("0002\tsend \"x/firmware.config\" \"new\"\r\n0003\tping\r\n");
    EXPECT_EQ(sender.line(), "0002\tready");
    EXPECT_EQ(sender.line(), std::nullopt);
    EXPECT_EQ(sender.error(), asio::error::eof);
    EXPECT_EQ(other.line(), std::nullopt);
    EXPECT_EQ(other.error(), asio::error::eof);

    LineClient early(running.port);
    LineClient second(running.port);
    running.pass(1.9);
    EXPECT_EQ(early.line(a_while), std::nullopt);
    running.pass(0.2);
    EXPECT_EQ(early.line(), hello);
    EXPECT_EQ(second.line(), hello);
    expect_revision(early, "0001", "1.1");
    early.say("0002\treceive \"x/firmware.config\"");
    EXPECT_EQ(early.lines_until("0002\tready"), "0002\taccepted\n0002\tdata \"new\"\n0002\tready\n");
}

TEST(Firmware, InsideTheProcessClientsComeBackToo) {
    Running running(Road::none);
    const auto ask = [](MemoryLink& link, const std::string& line) {
        link.write(line + "\r\n", std::chrono::seconds(20));
    };
    const auto read = [](MemoryLink& link, std::chrono::milliseconds bound) {
        char bytes[256];
        const MemoryLink::Result result = link.read(bytes, bound);
        return result.status == MemoryLink::Status::done ? std::string(bytes, result.count) : "none";
    };
    const auto link = running.server.connect();
    EXPECT_EQ(read(*link, std::chrono::seconds(20)), std::string(hello) + "\r\n");
    ask(*link, "0001\tsend \"firmware.config\" \"new\"");
    EXPECT_EQ(read(*link, std::chrono::seconds(20)), "0001\tready\r\n");
    EXPECT_EQ(read(*link, std::chrono::seconds(20)), "none");
    const auto next = running.server.connect();
    EXPECT_EQ(read(*next, a_while), "none");
    running.pass(2.1);
    EXPECT_EQ(read(*next, std::chrono::seconds(20)), std::string(hello) + "\r\n");
}

TEST(Firmware, AServerMayStopMeanwhile) {
    Running running;
    LineClient client(running.port);
    client.line();
    client.say("0001\tsend \"firmware.config\" \"new\"");
    EXPECT_EQ(client.line(), "0001\tready");
    EXPECT_EQ(client.line(), std::nullopt);
    LineClient early(running.port);
    running.server.stop();
    EXPECT_EQ(early.line(), std::nullopt);
}

TEST(Firmware, AMachineThatLeapsIsBackAtOnce) {
    Server server(rig::plain_machine(), {}, std::make_unique<LeapingClock>());
    const std::uint16_t port = server.start();
    for (int restart = 0; restart < 20; ++restart) {
        LineClient client(port);
        EXPECT_EQ(client.line(), hello);
        expect_revision(client, "0001", "1." + std::to_string(restart));
        client.say("0002\tsend \"firmware.config\" \"new\"");
        EXPECT_EQ(client.line(), "0002\tready");
        EXPECT_EQ(client.line(), std::nullopt);
    }
}

}  // namespace
}  // namespace zendrix::sim
