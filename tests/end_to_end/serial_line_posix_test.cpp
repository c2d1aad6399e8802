// The driver with a machine at a serial line in software.
#include <gtest/gtest.h>

#include "machine/descriptionreader.h"
#include "net/server.h"
#include "process_resources.h"
#include "recording_facilities.h"
#include "roads.h"

namespace {

using Texts = std::vector<std::string>;
using test_support::handle_count;
using test_support::thread_count;
using test_support::threads_sink_to;

class SerialLinePosix : public ::testing::Test {
protected:
    void SetUp() override {
        recording::reset();
        zendrix::sim::ServerOptions options;
        options.road = zendrix::sim::Road::terminal;
        server = std::make_unique<zendrix::sim::Server>(zendrix::sim::builtin_machine(), options,
                                                        std::make_unique<zendrix::sim::LeapingClock>());
        server->start();
        configuration = std::make_unique<Configuration>("COM:" + server->place() + ",230400");
    }

    std::unique_ptr<zendrix::sim::Server> server;
    std::unique_ptr<Configuration> configuration;
};

TEST_F(SerialLinePosix, Measures) {
    DriverHost host(name, configuration->directory());
    ASSERT_TRUE(host.driver().Open());
    measure(host, 90.0, 700);
    EXPECT_EQ(recording::error_log(), Texts());
}

TEST_F(SerialLinePosix, OneClientAfterAnotherFindsTheMachineAsItWasLeft) {
    DriverHost host(name, configuration->directory());
    ASSERT_TRUE(host.driver().Open());
    EXPECT_FALSE(host.driver().IsInitialized());
    host.initialise();
    host.driver().Close();
    const std::ptrdiff_t threads = thread_count();
    const std::ptrdiff_t handles = handle_count();
    for (int turn = 0; turn < 10; ++turn) {
        ASSERT_TRUE(host.driver().Open());
        EXPECT_TRUE(host.driver().IsInitialized());
        host.driver().Close();
    }
    EXPECT_TRUE(threads_sink_to(threads));
    EXPECT_EQ(handle_count(), handles);
    EXPECT_EQ(recording::error_log(), Texts());
}

TEST_F(SerialLinePosix, ALineThatGoesAwayIsToldOnce) {
    const std::string cause =
        "CZendrixCOM: machine connection lost: the serial line \"" + server->place() + "\" is gone";
    DriverHost host(name, configuration->directory());
    ASSERT_TRUE(host.driver().Open());
    lose_in_a_scan(host, [this](std::size_t count) {
        if (count == 100) server.reset();
    });
    ASSERT_FALSE(recording::error_log().empty());
    EXPECT_EQ(recording::error_log().front(), cause);
}

}  // namespace
