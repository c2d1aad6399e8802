// The driver with a machine in its own process.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "process_resources.h"
#include "recording_facilities.h"
#include "roads.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

std::string embedded(const std::string& settings) { return std::string(SIMULATOR_LIBRARY) + " " + settings; }

using test_support::handle_count;
using test_support::handles_sink_to;
using test_support::socket_count;
using test_support::thread_count;
using test_support::threads_sink_to;

bool is_loaded() { return test_support::has_loaded(fs::path(SIMULATOR_LIBRARY).filename().string()); }

class Embedded : public ::testing::Test {
protected:
    void SetUp() override { recording::reset(); }
};

TEST_F(Embedded, MeasuresWithoutASocket) {
    const std::ptrdiff_t before = socket_count();
    const Configuration configuration(embedded("--speed max"));
    DriverHost host(name, configuration.directory());
    ASSERT_TRUE(host.driver().Open());
    measure(host, 360.0, 3000);
    EXPECT_EQ(socket_count(), before);
    EXPECT_EQ(recording::error_log(), Texts());
}

TEST_F(Embedded, IsFoundBesideTheClient) {
    const Configuration configuration("zendrix-sim.dll --speed max --revision 2.1  ; without a directory");
    DriverHost host(name, configuration.directory());
    ASSERT_TRUE(host.driver().Open());
    host.initialise();
    EXPECT_EQ(recording::error_log(), Texts());
}

TEST_F(Embedded, TheSameSettingsMeanTheSameMachine) {
    const Configuration configuration(embedded("--speed max"));
    const Configuration other_configuration(embedded("--speed max --seed 2"));
    DriverHost first(name, configuration.directory());
    DriverHost second(name, configuration.directory());
    DriverHost other(name, other_configuration.directory());
    ASSERT_TRUE(first.driver().Open());
    ASSERT_TRUE(second.driver().Open());
    ASSERT_TRUE(other.driver().Open());
    first.initialise();
    EXPECT_EQ(first.move({{"x", {12.5, false}}}).find("error"), std::string::npos);
    EXPECT_NEAR(second.driver().GetAxisValue("x"), 12.5, 1e-6);
    EXPECT_TRUE(second.driver().IsInitialized());
    EXPECT_FALSE(other.driver().IsInitialized());
    // It is there as long as somebody is connected.
    first.driver().Close();
    ASSERT_TRUE(first.driver().Open());
    EXPECT_TRUE(first.driver().IsInitialized());
    first.driver().Close();
    second.driver().Close();
    ASSERT_TRUE(first.driver().Open());
    EXPECT_FALSE(first.driver().IsInitialized());
}

TEST_F(Embedded, IsGoneWithoutATraceManyTimesOver) {
    const Configuration configuration(embedded("--speed max"));
    DriverHost host(name, configuration.directory());
    ASSERT_TRUE(host.driver().Open());
    host.initialise();
    host.driver().Close();
    const std::ptrdiff_t threads = thread_count();
    const std::ptrdiff_t handles = handle_count();
    for (int turn = 0; turn < 20; ++turn) {
        ASSERT_TRUE(host.driver().Open());
        EXPECT_TRUE(is_loaded());
        if (turn % 5 == 0) host.initialise();
        host.driver().Close();
        EXPECT_FALSE(is_loaded());
    }
    EXPECT_TRUE(threads_sink_to(threads));
    EXPECT_TRUE(handles_sink_to(handles)) << handle_count() << ", not " << handles;
    EXPECT_EQ(recording::error_log(), Texts());
}

TEST_F(Embedded, ClosingInAMotionStopsTheMachine) {
    const Configuration configuration(embedded("--speed 1"));
    DriverHost host(name, configuration.directory());
    ASSERT_TRUE(host.driver().Open());
    MOutputChannel channel(7);
    {
        const std::unique_ptr<MMachInitCommand> init(host.driver().NewMMachInitCommand(&channel, {}));
        ASSERT_NE(init, nullptr);
        EXPECT_FALSE(init->IsDone());
    }
    channel.clear();
    const auto start = std::chrono::steady_clock::now();
    host.driver().Close();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    EXPECT_FALSE(is_loaded());
}

TEST_F(Embedded, AConnectionThatBreaksIsToldOnce) {
    const Configuration configuration(embedded("--speed max --fault reset@point:500"));
    DriverHost host(name, configuration.directory());
    ASSERT_TRUE(host.driver().Open());
    lose_in_a_scan(host, [](std::size_t) {});
    const Texts log = recording::error_log();
    EXPECT_EQ(std::count(log.begin(), log.end(), "CZendrixCOM: machine connection lost: reset by the server"),
              1)
        << testing::PrintToString(log);
}

TEST_F(Embedded, WrongSettingsAreToldAndNothingStays) {
    const std::ptrdiff_t handles = handle_count();
    const std::pair<std::string, std::string> rows[] = {
        {"--speed fast", "--speed: \"fast\" is neither max nor a factor from 0.001 on"},
        {"--revision 3", "--revision: \"3\" is not of the form MAJOR.MINOR"},
        {"--machine", "--machine: 1 required TEXT missing"},
        {"--port 7073", "The following arguments were not expected: 7073 --port"},
    };
    for (const auto& [settings, cause] : rows) {
        recording::reset();
        const std::string host_string = embedded(settings);
        const Configuration configuration(host_string);
        DriverHost host(name, configuration.directory());
        EXPECT_FALSE(host.driver().Open());
        ASSERT_EQ(recording::error_log().size(), 2U);
        EXPECT_EQ(recording::error_log().front(), "  error 'can't connect to \"" + host_string +
                                                      "\": the library \"" + SIMULATOR_LIBRARY +
                                                      "\" opens no connection: " + cause + "'\n");
        EXPECT_FALSE(is_loaded());
    }
    EXPECT_TRUE(handles_sink_to(handles)) << handle_count() << ", not " << handles;
}

}  // namespace
