// Driver, client and simulated machine together: whole actions, and what must hold while they run.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

#include "driver_host.h"
#include "log_of_work.h"
#include "process_resources.h"
#include "recording_facilities.h"
#include "simulated_machine.h"

namespace {

using Points = DriverHost::Points;

// The ring of the built-in machine.
constexpr double center_x = 10.0123;
constexpr double center_y = -4.9917;
constexpr double center_z = 20.0;
constexpr double radius = 25.0045;
constexpr double form_and_noise = 0.012;  // all harmonics in phase, and five times the noise

MMachCircle ring_circle() {
    MMachCircle circle;
    const double parameters[7] = {center_x, center_y, center_z, radius, 0.0, 360.0, 0.0};
    std::copy(std::begin(parameters), std::end(parameters), circle.parameters);
    return circle;
}

class DriverEndToEnd : public ::testing::Test {
protected:
    void SetUp() override { recording::reset(); }
};

TEST_F(DriverEndToEnd, MeasuresTheRingThatStandsOnTheMachine) {
    SimulatedMachine machine;
    DriverHost host(machine.name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    host.initialise();
    EXPECT_EQ(host.move({{"x", {center_x, false}}, {"y", {center_y, false}}, {"z", {center_z, false}}})
                  .find("error"),
              std::string::npos);
    MOutputChannel channel(4);
    const Points points = host.drain(host.driver().NewMMachScancircleCommand(&channel, ring_circle()), [] {});
    EXPECT_FALSE(channel.has_error()) << channel.get_text();
    channel.clear();
    ASSERT_GT(points.size(), 3000U);
    for (const auto& point : points) {
        ASSERT_EQ(point.size(), 3U);
        EXPECT_NEAR(std::hypot(point[0] - center_x, point[1] - center_y), radius, form_and_noise);
    }
    EXPECT_EQ(log_of_work(), std::vector<std::string>());
}

TEST_F(DriverEndToEnd, LosesNoPointWhileCapabilitiesChangeInTheMiddleOfScans) {
    SimulatedMachine machine({"capabilities@point:50+50"}, SimulatedMachine::Pace::leaping,
                             "cached_axes=x,y,z,c\n");
    DriverHost host(machine.name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    host.initialise();
    std::atomic<bool> stop = false;
    // A second thread of the host reads the picture while the client's thread renews it.
    std::thread reader([&] {
        while (!stop) {
            for (const char* axis : {"x", "y", "z", "c"}) {
                EXPECT_NE(host.driver().GetAxisInfo(axis), nullptr);
                EXPECT_FALSE(std::isnan(host.driver().GetAxisValue(axis)));
            }
            EXPECT_TRUE(host.driver().IsCommandEnabled("MMachScancircleCommand"));
            EXPECT_TRUE(host.driver().HasInitList());
            std::this_thread::yield();
        }
    });
    std::size_t expected = 0;
    for (int scan = 0; scan < 3; ++scan) {
        MOutputChannel channel(5);
        const Points points =
            host.drain(host.driver().NewMMachScancircleCommand(&channel, ring_circle()), [] {});
        EXPECT_FALSE(channel.has_error()) << channel.get_text();
        channel.clear();
        if (scan == 0) expected = points.size();
        EXPECT_GT(expected, 3000U);
        EXPECT_EQ(points.size(), expected);
    }
    stop = true;
    reader.join();
    EXPECT_EQ(log_of_work(), std::vector<std::string>());
}

TEST_F(DriverEndToEnd, SaysOnceThatTheConnectionWasLost) {
    SimulatedMachine machine({"reset@point:500"});
    DriverHost host(machine.name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    host.initialise();
    MOutputChannel channel(6);
    {
        const std::unique_ptr<MMachScancircleCommand> scan(
            host.driver().NewMMachScancircleCommand(&channel, ring_circle()));
        ASSERT_NE(scan, nullptr);
        EXPECT_TRUE(run_host(
            host.notifier(), [&] { return host.output().is_fatal(); },
            [&] {
                scan->IsDone();
                host.poll();
            }));
        std::vector<double> point;
        while (scan->GetNextScanPoint(point)) EXPECT_EQ(point.size(), 3U);
    }
    channel.clear();
    for (int polls = 0; polls < 5; ++polls) host.poll();
    const std::string text = host.output().get_text();
    const std::string fatal = "0000\terror \"fatal: machine connection lost\"\r\n";
    ASSERT_NE(text.find(fatal), std::string::npos) << text;
    EXPECT_EQ(text.find(fatal, text.find(fatal) + 1), std::string::npos) << text;
    EXPECT_TRUE(std::isnan(host.driver().GetAxisValue("x")));
    EXPECT_FALSE(host.set({{"speed", 10.0}}).empty());
}

TEST_F(DriverEndToEnd, AbortEndsAMotionOnTheMachine) {
    SimulatedMachine machine({}, SimulatedMachine::Pace::real);
    machine.server().invoke([](zendrix::sim::Hub&, zendrix::sim::Clock&) {});
    DriverHost host(machine.name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    MOutputChannel channel(7);
    const std::unique_ptr<MMachInitCommand> init(host.driver().NewMMachInitCommand(&channel, {}));
    ASSERT_NE(init, nullptr);
    EXPECT_FALSE(init->IsDone());
    init->Abort();
    EXPECT_TRUE(run_host(
        host.notifier(), [&] { return init->IsDone(); }, [&] { host.poll(); }));
    EXPECT_FALSE(host.driver().IsInitialized());
    channel.clear();
}

TEST_F(DriverEndToEnd, TwoHostsShareOneMachine) {
    SimulatedMachine machine;
    DriverHost first(machine.name, machine.directory());
    DriverHost second(machine.name, machine.directory());
    ASSERT_TRUE(first.driver().Open());
    ASSERT_TRUE(second.driver().Open());
    first.initialise();
    for (int turn = 1; turn <= 5; ++turn) {
        EXPECT_EQ(first.move({{"x", {1.0 * turn, false}}}).find("error"), std::string::npos);
        EXPECT_EQ(second.move({{"x", {-1.0 * turn, false}}}).find("error"), std::string::npos);
        EXPECT_NEAR(first.driver().GetAxisValue("x"), -1.0 * turn, 1e-6);
    }
    // Each has heard of the other's motions.
    first.poll();
    EXPECT_NE(first.output().get_text().find("event \"movement: end\""), std::string::npos);
}

TEST_F(DriverEndToEnd, OpeningAndClosingLeavesNoThread) {
    SimulatedMachine machine;
    DriverHost host(machine.name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    host.driver().Close();
    const auto threads = test_support::thread_count();
    for (int turn = 0; turn < 20; ++turn) {
        ASSERT_TRUE(host.driver().Open());
        host.driver().Close();
    }
    EXPECT_TRUE(test_support::threads_sink_to(threads));
}

TEST_F(DriverEndToEnd, BadTargetsAreAnsweredAndTheMachineStandsStill) {
    SimulatedMachine machine;
    DriverHost host(machine.name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    host.initialise();
    const double before = host.driver().GetAxisValue("x");
    const struct {
        std::string axis;
        double value;
        std::string error;
    } wrong[] = {
        {"nosuch", 1.0, "unknown axis"},
        {"x", std::nan(""), "invalid argument"},
        {"x", 1e9, "argument out of range"},
        {"a \"b\"\r\n\\c", 1.0, "unknown axis"},
        {std::string("q\0y", 3), 1.0, "unknown axis"},  // a name ends at its NUL
        {std::string(100000, 'q'), 1.0, "unknown axis"},
    };
    for (const auto& [axis, value, error] : wrong) {
        const std::string text = host.move({{axis, {value, false}}});
        EXPECT_NE(text.find("error \"" + error + "\"\r\n"), std::string::npos) << text;
        EXPECT_NEAR(host.driver().GetAxisValue("x"), before, 1e-9);
    }
    EXPECT_NE(host.move({}).find("error \"no axis specified\""), std::string::npos);
}

}  // namespace
