// A machine that comes back by a clock that is moved by hand.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

#include "net/server.h"
#include "rig.h"

namespace zendrix::sim::restarting {

inline constexpr std::chrono::milliseconds a_while(50);

inline const char* const hello = "0000\thello \"Plain\" 3.0 simulated";

struct Running {
    explicit Running(Road road = Road::tcp) : server(rig::plain_machine(), on(road), make_clock()) {
        port = server.start();
    }

    static ServerOptions on(Road road) {
        ServerOptions options;
        options.road = road;
        return options;
    }
    static std::unique_ptr<Clock> make_clock() { return std::make_unique<ManualClock>(); }
    void pass(double seconds) {
        server.invoke([&](Hub&, Clock& clock) { dynamic_cast<ManualClock&>(clock).advance(seconds); });
    }

    Server server;
    std::uint16_t port = 0;
};

template <class Client>
void expect_revision(Client& client, const std::string& id, const std::string& revision) {
    client.say(id + "\tmachine revision");
    EXPECT_EQ(client.line(), id + "\tdata \"" + revision + "\"");
    EXPECT_EQ(client.line(), id + "\tready");
}

}  // namespace zendrix::sim::restarting
