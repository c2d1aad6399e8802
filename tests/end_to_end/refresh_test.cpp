// What a change of capabilities costs on a large machine, counted in lines and pieces on the wire.
#include <gtest/gtest.h>

#include "counting_relay.h"
#include "driver_host.h"
#include "log_of_work.h"
#include "recording_facilities.h"
#include "served_machine.h"

namespace {

using Requests = std::vector<std::string>;

// 200 axes, most of them on the keypad, and 64 probes of three tips.
zendrix::sim::MachineDescription large_machine() {
    std::string ini = "[machine]\nname=Large\n[probe]\nhighest_probe=64\nhighest_tip=3\nloaded=1 1\n";
    for (int axis = 1; axis <= 200; ++axis) {
        ini += "[axis a" + std::to_string(axis) +
               "]\nkind=" + (axis % 20 == 0 ? "spindle\nspin=1" : "linear") +
               "\nspeed=10\nacceleration=10\ninit=1\nkeypad=1\n";
    }
    for (int probe = 1; probe <= 64; ++probe) {
        for (int tip = 1; tip <= 3; ++tip) {
            ini += "[tip " + std::to_string(probe) + " " + std::to_string(tip) + "]\nz=-50\ndiameter=3\n";
        }
    }
    return zendrix::sim::parse_machine(ini, "large.ini");
}

TEST(Refresh, OfALargeMachineIsOneLineOutAndOnePieceInPerCall) {
    recording::reset();
    ServedMachine machine(large_machine(), "cached_axes=a1,a2,a200\n");
    CountingRelay relay(machine.port());
    machine.lead_to(relay.port());
    DriverHost host(machine.name, machine.directory());
    ASSERT_TRUE(host.driver().Open());
    ASSERT_NE(host.driver().GetAxisInfo("a200"), nullptr);
    EXPECT_EQ(host.driver().ListProbes(0, 0).size(), 192u);
    host.output().clear();
    relay.take();
    machine.server().invoke(
        [](zendrix::sim::Hub& hub, zendrix::sim::Clock&) { hub.machine().put_out_of_use("a7"); });
    EXPECT_TRUE(run_host(
        host.notifier(), [&] { return host.output().get_text().find("capabilities") != std::string::npos; },
        [&] { host.poll(); }));
    EXPECT_NE(host.driver().GetAxisInfo("a7")->flags & 16u, 0u);
    const CountingRelay::Count count = relay.take();
    EXPECT_EQ(count.requests, (Requests{"commands", "capabilities", "keypad list +inactive", "spin list",
                                        "spin active", "init list", "get \"a1\" \"a2\" \"a200\""}));
    EXPECT_EQ(count.pieces_out, 7u);
    EXPECT_EQ(count.pieces_in, 8u);  // the event, and an answer each
    EXPECT_EQ(log_of_work(), Requests());
}

}  // namespace
