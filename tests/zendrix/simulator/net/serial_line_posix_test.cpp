// The server at a serial line that is in software alone: conversations without connections.
#include <gtest/gtest.h>

#include <future>
#include <optional>

#include "net/serialclient.h"
#include "net/server.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

struct SerialServer {
    explicit SerialServer(ServerOptions options = {},
                          std::unique_ptr<Clock> clock = std::make_unique<LeapingClock>())
        : server(rig::plain_machine(), with_terminal(std::move(options)), std::move(clock)) {
        EXPECT_EQ(server.start(), 0);
    }

    static ServerOptions with_terminal(ServerOptions options) {
        options.road = Road::terminal;
        return options;
    }

    Server server;
};

const char* const ask = "0000\thello";
const char* const hello = "0000\thello \"Plain\" 3.0 simulated";

TEST(SerialLinePosix, IsSilentUntilSomebodyAsksForTheHello) {
    SerialServer running;
    SerialClient line(running.server.place());
    line.say("0001\tping");
    line.say("garbage");
    line.say(ask);
    EXPECT_EQ(line.line(), "");
    EXPECT_EQ(line.line(), hello);
    line.say("0001\tping");
    EXPECT_EQ(line.line(), "0001\tready");
}

TEST(SerialLinePosix, AnotherHelloBeginsAnew) {
    SerialServer running({}, std::make_unique<ManualClock>());
    SerialClient line(running.server.place());
    line.say(ask);
    ASSERT_TRUE(line.reaches(hello));
    line.say("0001\tmachine get");
    line.say("0002\tmove \"x\"=90");
    ASSERT_TRUE(line.reaches("0002\taccepted"));
    line.say("0004\twatch 10 0 \"x\"");
    ASSERT_TRUE(line.reaches("0004\tready"));
    line.say(ask);
    ASSERT_TRUE(line.reaches(hello));
    // Its motion stands, its lock is free, its watch is over and its ids are unused.
    line.say("0002\tmachine get now");
    EXPECT_EQ(line.line(), "0002\tready");
    // The motion would take nine seconds.
    running.server.invoke([](Hub&, Clock& clock) { dynamic_cast<ManualClock&>(clock).advance(3.0); });
    running.server.invoke([](Hub& hub, Clock&) { EXPECT_FALSE(hub.machine().is_busy()); });
}

TEST(SerialLinePosix, AFarewellEndsTheConversation) {
    SerialServer running({}, std::make_unique<ScaledClock>(1.0));
    SerialClient line(running.server.place());
    line.say(ask);
    ASSERT_TRUE(line.reaches(hello));
    line.say("0001\tmove \"x\"=90");
    ASSERT_TRUE(line.reaches("0001\taccepted"));
    line.say("0000\tbye");
    line.say("0002\tping");
    line.say(ask);
    EXPECT_EQ(line.line(), "");
    EXPECT_EQ(line.line(), hello);
    line.say("0003\tping");
    EXPECT_EQ(line.line(), "0003\tready");
}

TEST(SerialLinePosix, AClientThatReadNothingLeavesItsSuccessorLittle) {
    SerialServer running;
    SerialClient line(running.server.place());
    line.say(ask);
    line.say("0001\tset \"scanstep\"=0.01");
    line.say("0002\tmove \"x\"=20");
    ASSERT_TRUE(line.reaches("0002\tready"));
    line.say("0003\tscan \"z\"=99.99");
    ASSERT_TRUE(line.reaches("0003\taccepted"));
    // 10000 points want to leave, and nobody reads them.
    line.say(ask);
    std::size_t passed = 0;
    std::optional<std::string> next;
    while ((next = line.line()) && *next != hello) passed += next->size();
    EXPECT_EQ(next, hello);
    EXPECT_LT(passed, 100000U);
    line.say("0001\tping");
    EXPECT_TRUE(line.reaches("0001\tready"));
}

TEST(SerialLinePosix, ALineThatWasGivenUpIsServedAgain) {
    ServerOptions options;
    options.faults.add("close@request:1");
    options.faults.add("silent@request:2");
    std::promise<void> opened_again;
    options.log = [&, count = 0](const std::string& text) mutable {
        if (text == "line open" && ++count == 2) opened_again.set_value();
    };
    SerialServer running(std::move(options));
    SerialClient line(running.server.place());
    line.say(ask);
    ASSERT_TRUE(line.reaches(hello));
    line.say("0001\tping");
    // Closed means that the server lets go of the line for a while.
    ASSERT_EQ(opened_again.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    line.say(ask);
    ASSERT_TRUE(line.reaches(hello));
    line.say("0002\tping");
    line.say("0003\tping");
    line.say(ask);
    ASSERT_TRUE(line.reaches(hello));
    line.say("0004\tping");
    EXPECT_EQ(line.line(), "0004\tready");
}

TEST(SerialLinePosix, EndsWithTheServer) {
    std::optional<SerialServer> running(std::in_place);
    SerialClient line(running->server.place());
    line.say(ask);
    ASSERT_TRUE(line.reaches(hello));
    running.reset();
    EXPECT_EQ(line.line(), std::nullopt);
}

}  // namespace
}  // namespace zendrix::sim
