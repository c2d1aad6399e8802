// Blocks on their way to clients that also want something else.
#include <gtest/gtest.h>

#include "net/lineclient.h"
#include "net/server.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

// A machine with a block of 20 MB.
struct Running {
    Running() : server(machine(), {}, std::make_unique<LeapingClock>()), port(server.start()) {}

    static MachineDescription machine() {
        MachineDescription description = rig::plain_machine();
        description.blocks.blocks["big"] = std::string(20'000'000, 'x');
        return description;
    }

    Server server;
    std::uint16_t port;
};

TEST(BlockStream, AnsweredBetweenTheLinesOfABlock) {
    Running running;
    LineClient client(running.port);
    client.say("0001\treceive \"big\"");
    ASSERT_TRUE(client.reaches("0001\taccepted"));
    // The block would fill every buffer on the way if it were not read.
    client.say("0002\tping");
    client.say("0003\tabort 1");
    std::size_t lines = 0;
    std::vector<std::string> others;
    while (others.size() < 4) {
        const std::optional<std::string> line = client.line();
        ASSERT_TRUE(line);
        if (line->starts_with("0001\tdata"))
            ++lines;
        else
            others.push_back(*line);
    }
    EXPECT_EQ(others, (std::vector<std::string>{"0002\tready", "0001\terror \"aborted\"", "0001\tready",
                                                "0003\tready"}));
    EXPECT_LT(lines, 20'000'000u / 16384u);
}

TEST(BlockStream, AClientThatReadsNothingHoldsNobody) {
    Running running;
    LineClient idle(running.port);
    idle.say("0001\treceive \"big\"");
    ASSERT_TRUE(idle.reaches("0001\taccepted"));
    LineClient client(running.port);
    client.say("0001\treceive \"big\"");
    EXPECT_TRUE(client.reaches("0001\tready"));
    EXPECT_TRUE(idle.reaches("0001\tready"));
}

}  // namespace
}  // namespace zendrix::sim
