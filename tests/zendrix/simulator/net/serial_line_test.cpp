// A serial line that the server can't have.
#include <gtest/gtest.h>

#include "net/missing_line.h"
#include "net/server.h"
#include "rig.h"

namespace zendrix::sim {
namespace {

TEST(SerialLine, ALineThatCannotBeHadIsNamed) {
    ServerOptions options;
    options.road = Road::serial;
    options.device = "COM999";
    Server server(rig::plain_machine(), std::move(options), std::make_unique<LeapingClock>());
    try {
        server.start();
        ADD_FAILURE() << "served a line that isn't there";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), cannot_listen_on_missing("COM999"));
    }
}

}  // namespace
}  // namespace zendrix::sim
