// The driver on the two roads without a network: a machine in its own process, and one at a serial line.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "driver_host.h"
#include "machine/descriptionreader.h"
#include "net/server.h"
#include "recording_facilities.h"
#include "temporary_directory.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const std::string name = "m2zendrix";

// A configuration that leads to `host`.
class Configuration {
public:
    explicit Configuration(const std::string& host) {
        m_directory.file("m2zendrix.ini", "[connection]\nhost=" + host + "\n");
    }
    std::string directory() const { return m_directory.path(); }

private:
    TemporaryDirectory m_directory;
};

std::string embedded(const std::string& settings) { return std::string(SIMULATOR_LIBRARY) + " " + settings; }

std::ptrdiff_t entries_of(const char* directory) {
    return std::distance(fs::directory_iterator(directory), {});
}

std::size_t sockets() {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::read_symlink(entry, error).string().starts_with("socket:")) ++count;
    }
    return count;
}

bool is_loaded() {
    std::ifstream maps("/proc/self/maps");
    return std::string((std::istreambuf_iterator<char>(maps)), {}).find("zendrix-sim.dll") !=
           std::string::npos;
}

// True once no more threads than these are left. The system takes a moment to forget one that was joined.
bool threads_sink_to(std::ptrdiff_t count) {
    const auto end = std::chrono::steady_clock::now() + host_patience;
    while (thread_count() > count) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::yield();
    }
    return true;
}

// The ring that stands on the built-in machine, in a part of a turn.
MMachCircle ring(double sweep) {
    MMachCircle circle;
    const double parameters[7] = {10.0123, -4.9917, 20.0, 25.0045, 0.0, sweep, 0.0};
    std::copy(std::begin(parameters), std::end(parameters), circle.parameters);
    return circle;
}

void expect_ring(const DriverHost::Points& points, std::size_t at_least) {
    EXPECT_GT(points.size(), at_least);
    for (const auto& point : points) {
        ASSERT_EQ(point.size(), 3U);
        EXPECT_NEAR(std::hypot(point[0] - 10.0123, point[1] + 4.9917), 25.0045, 0.012);
    }
}

// Initialises, moves and scans.
void measure(DriverHost& host, double sweep, std::size_t at_least) {
    host.initialise();
    EXPECT_EQ(host.move({{"x", {10.0, false}}, {"y", {-5.0, false}}, {"z", {20.0, false}}}).find("error"),
              std::string::npos);
    EXPECT_NEAR(host.driver().GetAxisValue("x"), 10.0, 1e-6);
    MOutputChannel channel(4);
    expect_ring(host.drain(host.driver().NewMMachScancircleCommand(&channel, ring(sweep)), [] {}), at_least);
    EXPECT_FALSE(channel.has_error()) << channel.get_text();
    channel.clear();
}

// Scans until the connection is lost; the host is told once.
void lose_in_a_scan(DriverHost& host, const std::function<void(std::size_t)>& after_point) {
    host.initialise();
    MOutputChannel channel(6);
    {
        const std::unique_ptr<MMachScancircleCommand> scan(
            host.driver().NewMMachScancircleCommand(&channel, ring(360.0)));
        ASSERT_NE(scan, nullptr);
        std::vector<double> point;
        std::size_t count = 0;
        EXPECT_TRUE(run_host(
            host.notifier(), [&] { return host.output().is_fatal(); },
            [&] {
                scan->IsDone();
                host.poll();
                while (scan->GetNextScanPoint(point)) after_point(++count);
            }));
    }
    channel.clear();
    for (int polls = 0; polls < 3; ++polls) host.poll();
    const std::string text = host.output().get_text();
    const std::string fatal = "error \"fatal: machine connection lost\"";
    ASSERT_NE(text.find(fatal), std::string::npos) << text;
    EXPECT_EQ(text.find(fatal, text.find(fatal) + 1), std::string::npos) << text;
}

class Embedded : public ::testing::Test {
protected:
    void SetUp() override { recording::reset(); }
};

TEST_F(Embedded, MeasuresWithoutASocket) {
    const std::size_t before = sockets();
    const Configuration configuration(embedded("--speed max"));
    DriverHost host(name, configuration.directory());
    ASSERT_TRUE(host.driver().Open());
    measure(host, 360.0, 3000);
    EXPECT_EQ(sockets(), before);
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
    host.driver().Close();
    const std::ptrdiff_t threads = thread_count();
    const std::ptrdiff_t files = entries_of("/proc/self/fd");
    for (int turn = 0; turn < 20; ++turn) {
        ASSERT_TRUE(host.driver().Open());
        EXPECT_TRUE(is_loaded());
        if (turn % 5 == 0) host.initialise();
        host.driver().Close();
        EXPECT_FALSE(is_loaded());
    }
    EXPECT_TRUE(threads_sink_to(threads));
    EXPECT_EQ(entries_of("/proc/self/fd"), files);
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
    ASSERT_FALSE(recording::error_log().empty());
    EXPECT_EQ(recording::error_log().front(), "CZendrixCOM: machine connection lost: reset by the server");
}

TEST_F(Embedded, WrongSettingsAreToldAndNothingStays) {
    const std::ptrdiff_t files = entries_of("/proc/self/fd");
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
    EXPECT_EQ(entries_of("/proc/self/fd"), files);
}

class AtASerialLine : public ::testing::Test {
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

TEST_F(AtASerialLine, Measures) {
    DriverHost host(name, configuration->directory());
    ASSERT_TRUE(host.driver().Open());
    measure(host, 90.0, 700);
    EXPECT_EQ(recording::error_log(), Texts());
}

TEST_F(AtASerialLine, OneClientAfterAnotherFindsTheMachineAsItWasLeft) {
    DriverHost host(name, configuration->directory());
    ASSERT_TRUE(host.driver().Open());
    EXPECT_FALSE(host.driver().IsInitialized());
    host.initialise();
    host.driver().Close();
    const std::ptrdiff_t threads = thread_count();
    const std::ptrdiff_t files = entries_of("/proc/self/fd");
    for (int turn = 0; turn < 10; ++turn) {
        ASSERT_TRUE(host.driver().Open());
        EXPECT_TRUE(host.driver().IsInitialized());
        host.driver().Close();
    }
    EXPECT_TRUE(threads_sink_to(threads));
    EXPECT_EQ(entries_of("/proc/self/fd"), files);
    EXPECT_EQ(recording::error_log(), Texts());
}

TEST_F(AtASerialLine, ALineThatGoesAwayIsToldOnce) {
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
