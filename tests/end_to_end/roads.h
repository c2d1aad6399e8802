// What the driver does on any road to the machine: measure, and lose it.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "driver_host.h"
#include "temporary_directory.h"

inline const std::string name = "m2zendrix";

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

// The ring that stands on the built-in machine, in a part of a turn.
inline MMachCircle ring(double sweep) {
    MMachCircle circle;
    const double parameters[7] = {10.0123, -4.9917, 20.0, 25.0045, 0.0, sweep, 0.0};
    std::copy(std::begin(parameters), std::end(parameters), circle.parameters);
    return circle;
}

inline void expect_ring(const DriverHost::Points& points, std::size_t at_least) {
    EXPECT_GT(points.size(), at_least);
    for (const auto& point : points) {
        ASSERT_EQ(point.size(), 3U);
        EXPECT_NEAR(std::hypot(point[0] - 10.0123, point[1] + 4.9917), 25.0045, 0.012);
    }
}

// Initialises, moves and scans.
inline void measure(DriverHost& host, double sweep, std::size_t at_least) {
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
inline void lose_in_a_scan(DriverHost& host, const std::function<void(std::size_t)>& after_point) {
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
