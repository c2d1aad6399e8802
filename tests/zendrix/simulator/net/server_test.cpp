#include "net/server.h"

#include <gtest/gtest.h>

#include "net/lineclient.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

using rig::plain_machine;

const char* const hello = "0000\thello \"Plain\" 3.0 simulated";

// A server with the plain machine, as fast as it can or with a clock by hand.
struct Running {
    explicit Running(ServerOptions options = {},
                     std::unique_ptr<Clock> clock = std::make_unique<LeapingClock>(),
                     const MachineDescription& machine = plain_machine())
        : server(machine, std::move(options), std::move(clock)), port(server.start()) {}

    static Running by_hand() { return Running({}, std::make_unique<ManualClock>()); }
    void pass(double seconds) {
        server.invoke([&](Hub&, Clock& clock) { dynamic_cast<ManualClock&>(clock).advance(seconds); });
    }

    Server server;
    std::uint16_t port;
};

ServerOptions with_fault(const std::string& fault) {
    ServerOptions options;
    options.faults.add(fault);
    return options;
}

// A long scan for `client`: 10000 points.
void begin_long_scan(LineClient& client) {
    client.say("0001\tset \"scanstep\"=0.01");
    client.lines_until("0001\tready");
    client.say("0002\tmove \"x\"=20");
    client.lines_until("0002\tready");
    client.say("0003\tscan \"z\"=99.99");
}

TEST(Server, GreetsAndAnswers) {
    Running running;
    LineClient client(running.port);
    EXPECT_EQ(client.line(), hello);
    client.send("0001\tping\r\n0002\tget \"x\"\n0003\tmachine na");
    EXPECT_EQ(client.line(), "0001\tready");
    EXPECT_EQ(client.line(), "0002\tdata 0");
    EXPECT_EQ(client.line(), "0002\tready");
    client.send("me\r\n");
    EXPECT_EQ(client.lines_until("0003\tready"), "0003\tdata \"Plain\"\n0003\tready\n");
}

TEST(Server, AWholeScanArrives) {
    Running running;
    LineClient client(running.port);
    client.line();
    begin_long_scan(client);
    EXPECT_EQ(client.line(), "0003\taccepted");
    for (int point = 1; point <= 10000; ++point) {
        const std::optional<std::string> line = client.line();
        ASSERT_TRUE(line && line->starts_with("0003\tpoint " + std::to_string(point) + " ")) << point;
    }
    EXPECT_EQ(client.line(), "0003\tready");
}

TEST(Server, ManyClientsAtOnce) {
    Running running;
    std::vector<std::unique_ptr<LineClient>> clients;
    for (int i = 0; i < 50; ++i) clients.push_back(std::make_unique<LineClient>(running.port));
    for (auto& client : clients) client->say("0005\tget \"speed\"");
    for (auto& client : clients) {
        EXPECT_EQ(client->line(), hello);
        EXPECT_EQ(client->line(), "0005\tdata 10");
        EXPECT_EQ(client->line(), "0005\tready");
    }
}

TEST(Server, AClientThatDoesNotReadHarmsNobody) {
    MachineDescription machine = plain_machine();
    machine.max_points = 2000000;
    Running running({}, std::make_unique<LeapingClock>(), machine);
    LineClient slow(running.port);
    slow.line();
    slow.say("0001\tset \"scanstep\"=0.0001");
    slow.lines_until("0001\tready");
    slow.say("0002\tmove \"x\"=20");
    slow.lines_until("0002\tready");
    slow.say("0003\tscan \"z\"=100");  // a million points, and nobody reads them
    LineClient other(running.port);
    EXPECT_EQ(other.line(), hello);
    for (int i = 0; i < 100; ++i) {
        other.say("0004\tget \"x\"");
        EXPECT_EQ(other.line(), "0004\tdata 20");
        EXPECT_EQ(other.line(), "0004\tready");
    }
    bool busy = false;
    running.server.invoke([&](Hub& hub, Clock&) { busy = hub.machine().is_busy(); });
    EXPECT_TRUE(busy);  // it waits for its reader
    slow.close();
    other.say("0005\tmachine get");
    EXPECT_EQ(other.line(), "0005\tready");
}

TEST(Server, ASlowReaderGetsEveryPoint) {
    Running running;
    LineClient client(running.port);
    client.line();
    begin_long_scan(client);
    LineClient other(running.port);  // time passes meanwhile
    other.line();
    other.say("0001\tping");
    other.line();
    const std::string all = client.lines_until("0003\tready");
    EXPECT_NE(all.find("\n0003\tpoint 10000 "), std::string::npos);
}

TEST(Server, BadClientsAreAnsweredAndBounded) {
    Running running;
    LineClient client(running.port);
    client.line();
    client.say(std::string("\x00\xff\x13 nonsense", 12));
    EXPECT_EQ(client.line(), "0000\terror \"transaction: t-id missing\"");
    client.say("0007\tget \"" + std::string(3u << 20, 'x') + "\"");
    EXPECT_EQ(client.line(), "0007\terror \"buffer overrun\"");
    EXPECT_EQ(client.line(), "0007\tready");
    client.say("0008\tping");
    EXPECT_EQ(client.line(), "0008\tready");
}

TEST(Server, AClientThatGoesStopsItsMotion) {
    Running running = Running::by_hand();
    {
        LineClient client(running.port);
        client.line();
        client.say("0001\tmachine get");
        client.line();
        client.say("0002\tmove \"x\"=100");
        EXPECT_EQ(client.line(), "0002\taccepted");
        running.pass(3.0);
    }
    LineClient next(running.port);
    next.line();
    next.say("0001\tmachine get");  // waits until the server has seen the other one go
    EXPECT_EQ(next.line(), "0001\tready");
    running.pass(1.0);
    next.say("0002\tget \"x\"");
    EXPECT_EQ(next.line(), "0002\tdata 30");
}

TEST(Server, WatchLinesComeByThemselves) {
    Running running;
    LineClient client(running.port);
    client.line();
    client.say("0005\twatch 1 50 \"x\" \"init\"");
    EXPECT_EQ(client.line(), "0005\tready");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(client.line(), "0005\twatch 0 1");
    client.say("0006\twatch 0 0");
    client.lines_until("0006\tready");
    client.say("0007\tping");
    EXPECT_EQ(client.line(), "0007\tready");
}

TEST(Server, CapabilitiesChangeOnASchedule) {
    ServerOptions options;
    options.capabilities_change_every = std::chrono::milliseconds(1);
    Running running(options);
    LineClient client(running.port);
    client.line();
    client.say("0001\tmaster");
    EXPECT_EQ(client.lines_until("0000\tevent \"capabilities changed\""),
              "0001\tready\n0000\tevent \"capabilities changed\"\n");
}

TEST(Server, StopEndsTheMotionFirst) {
    Running running = Running::by_hand();
    LineClient client(running.port);
    client.line();
    client.say("0002\tmove \"x\"=100");
    EXPECT_EQ(client.line(), "0002\taccepted");
    running.server.stop();
    EXPECT_EQ(client.line(), "0002\terror \"aborted\"");
    EXPECT_EQ(client.line(), "0002\tready");
    EXPECT_EQ(client.line(), std::nullopt);
    EXPECT_EQ(client.error(), asio::error::eof);
}

TEST(Server, StopIsBoundedEvenWithWaitersAndSilentClients) {
    Running running(with_fault("silent@request:3"));
    LineClient holder(running.port);
    holder.line();
    holder.say("0001\tmachine get");
    holder.line();
    LineClient waiter(running.port);
    waiter.line();
    waiter.say("0001\tmachine get");
    waiter.say("0002\twatch 3600000 0 \"x\"");  // the third request: from here on it hears nothing
    const auto begin = std::chrono::steady_clock::now();
    running.server.stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST(Server, OnceEndsAfterTheFirstClient) {
    ServerOptions options;
    options.once = true;
    Running running(options);
    {
        LineClient client(running.port);
        client.line();
    }
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    running.server.wait([&] { return std::chrono::steady_clock::now() > bound; });
    EXPECT_LT(std::chrono::steady_clock::now(), bound);
}

TEST(Server, ATakenPortIsTold) {
    Running running;
    ServerOptions options;
    options.address = "127.0.0.1";
    options.port = running.port;
    Server second(plain_machine(), options, std::make_unique<LeapingClock>());
    EXPECT_THROW(second.start(), std::runtime_error);
}

TEST(Server, ClosesOnDemand) {
    Running running(with_fault("close@request:2"));
    LineClient client(running.port);
    client.line();
    client.send("0001\tping\r\n0002\tping\r\n0003\tping\r\n");
    EXPECT_EQ(client.line(), "0001\tready");
    EXPECT_EQ(client.line(), std::nullopt);
    EXPECT_EQ(client.rest(), "");
    EXPECT_EQ(client.error(), asio::error::eof);
}

TEST(Server, ResetsOnDemand) {
    Running running(with_fault("reset@request:1"));
    LineClient client(running.port);
    client.line();
    client.say("0001\tping");
    EXPECT_EQ(client.line(), std::nullopt);
    EXPECT_EQ(client.error(), asio::error::connection_reset);
}

TEST(Server, FallsSilentOnDemand) {
    Running running(with_fault("silent@request:1"));
    LineClient client(running.port);
    client.line();
    client.say("0001\tping");
    LineClient other(running.port);
    EXPECT_EQ(other.line(), hello);
    EXPECT_EQ(client.line(std::chrono::milliseconds(50)), std::nullopt);
    EXPECT_EQ(client.error(), asio::error::operation_aborted);  // still open
}

TEST(Server, HalfAPointAndThenNothing) {
    Running running(with_fault("half-line@point:5000"));
    LineClient client(running.port);
    client.line();
    begin_long_scan(client);
    const std::string all = client.lines_until("0003\tready");
    EXPECT_NE(all.find("0003\tpoint 4999 "), std::string::npos);
    EXPECT_TRUE(all.ends_with("(no more)"));
    EXPECT_TRUE(client.rest().starts_with("0003\tpoint 50")) << client.rest();
    EXPECT_EQ(client.error(), asio::error::eof);
    LineClient next(running.port);
    EXPECT_EQ(next.line(), hello);
}

TEST(Server, HoldsAnAnswerBackOnDemand) {
    Running running(with_fault("slow=200@request:1"));
    LineClient client(running.port);
    client.line();
    const auto begin = std::chrono::steady_clock::now();
    client.say("0001\tping");
    EXPECT_EQ(client.line(), "0001\tready");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(190));
}

}  // namespace
}  // namespace zendrix::sim
