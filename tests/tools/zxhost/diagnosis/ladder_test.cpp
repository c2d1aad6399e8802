// The ladder against servers that break each of its rungs.
#include "ladder_fixture.h"

namespace zxhost {
namespace {

TEST_F(LadderTest, AHealthyMachineHoldsEveryRung) {
    EXPECT_TRUE(climb(server()));
    ASSERT_EQ(rungs.size(), rung_names.size());
    for (std::size_t i = 0; i < rungs.size(); ++i) {
        EXPECT_EQ(rungs[i].name, rung_names[i]);
        EXPECT_EQ(rungs[i].result.state, RungState::holds) << rungs[i].name;
        EXPECT_EQ(rungs[i].result.advice, "");
    }
    EXPECT_EQ(rung("address").text, "127.0.0.1");
    EXPECT_EQ(rung("hello").text.substr(0, 18), "\"Fake\" (simulated)");
    EXPECT_EQ(rung("revision").text, "2.2");
    EXPECT_EQ(rung("commands").text.substr(0, 42), "2 of the 35 that the driver knows; not ini");
    EXPECT_EQ(rung("adapter").text, "acknowledges at once");
    EXPECT_EQ(trips.size(), 200U);
    EXPECT_TRUE(std::is_sorted(trips.begin(), trips.end()));
    EXPECT_EQ(registry.open_keys(), 0U);
}

TEST_F(LadderTest, ALibraryHoldsEveryRungToo) { climb_without_adapter(test::serve_library(server())); }

TEST_F(LadderTest, NothingIsAskedThatMovesTheMachine) {
    EXPECT_TRUE(climb([](Peer& peer) {
        peer.hello();
        peer.tells_ping = true;
        for (const char* words : {"commands", "machine get now", "machine release"})
            peer.expect(words, table.at(words));
        for (int i = 0; i < 200; ++i) peer.expect("ping", {"ready"});
        EXPECT_TRUE(peer.wait_for_close());
    }));
}

TEST_F(LadderTest, AnUnknownNameHasNoAddress) {
    target.host = "no-such-machine.invalid";
    EXPECT_FALSE(climb());
    expect_broken("address", "\"no-such-machine.invalid\" stands for no address", "address in numbers");
}

TEST_F(LadderTest, AClosedPortIsRefused) {
    {
        const auto gone = test::serve_tcp([](Peer& peer) { peer.close(); });
        target.port = gone->connection_string().substr(gone->connection_string().find(' ') + 1);
        climb();
        gone->finish();
    }
    EXPECT_FALSE(climb());
    expect_broken("connection", "connection refused", "start the machine server");
}

TEST_F(LadderTest, APortThatIsNoneIsTold) {
    target.port = "70730";
    EXPECT_FALSE(climb());
    expect_broken("connection", "expected a host", "from 1 to 65535");
}

TEST_F(LadderTest, ALibraryThatIsNotThereIsTold) {
    target.host = "/no/such/sim.dll";
    EXPECT_FALSE(climb());
    expect_broken("connection", "/no/such/sim.dll", "library");
    EXPECT_EQ(Ladder(target).connection_string(), "/no/such/sim.dll");
}

TEST_F(LadderTest, ASerialLineThatIsNotThereIsTold) {
    target.host = "/no/such/COM7";
    EXPECT_FALSE(climb());
    expect_broken("connection", "/no/such/COM7", "device");
}

TEST_F(LadderTest, SilenceIsNoHello) {
    EXPECT_FALSE(climb([](Peer& peer) { peer.wait_for_close(); }));
    expect_broken("hello", "silent for 300 ms", "the machine server hangs");
}

TEST_F(LadderTest, AnotherServiceIsQuoted) {
    EXPECT_FALSE(climb([](Peer& peer) { peer.line("SSH-2.0-other"); }));
    expect_broken("hello", "SSH-2.0-other", "another service");
    EXPECT_FALSE(climb([](Peer& peer) { peer.send("\x1b[2Jwho?"); }));
    expect_broken("hello", "\\x1b[2Jwho?", "another service");
}

TEST_F(LadderTest, AClientThatIsSentAwayIsTold) {
    EXPECT_FALSE(climb([](Peer& peer) { peer.close(); }));
    expect_broken("hello", "closed by the server", "sends clients away");
}

TEST_F(LadderTest, AnUnknownRevisionIsTold) {
    for (const std::string revision : {"4.0", "0.9"}) {
        EXPECT_FALSE(climb([&](Peer& peer) { peer.hello(revision); }));
        expect_broken("revision", revision + " is not known", "versions that belong together");
    }
}

TEST_F(LadderTest, AServerWithoutACommandSetIsTold) {
    EXPECT_FALSE(climb(server({{"commands", {"error \"transaction: command unknown\"", "ready"}}})));
    expect_broken("commands", "\"commands\" is refused: transaction: command unknown", "update it");
    EXPECT_FALSE(climb(server({{"commands", {"ready"}}})));
    expect_broken("commands", "0 of the 35", "no host can work");
    EXPECT_FALSE(climb(server({{"commands", {"data \"move\"", "data nonsense", "ready"}}})));
    expect_broken("commands", "\"get\" isn't among them", "no host can work");
}

TEST_F(LadderTest, AServerThatStopsAnsweringIsTold) {
    EXPECT_FALSE(climb([](Peer& peer) {
        peer.hello();
        peer.wait_for_close();
    }));
    expect_broken("commands", "no answer within 300 ms", "hangs or broke off");
    EXPECT_FALSE(climb([](Peer& peer) {
        peer.hello();
        peer.expect("commands", {"data \"get\""});
        peer.close();
    }));
    expect_broken("commands", "closed by the server", "hangs or broke off");
}

TEST_F(LadderTest, AMachineInUseIsTold) {
    EXPECT_FALSE(climb(server({{"machine get now", {"error \"wrong state\"", "ready"}}})));
    expect_broken("machine lock", "the machine isn't free: wrong state", "another host has it");
    EXPECT_FALSE(climb(server({{"machine release", {"error \"wrong state\"", "ready"}}})));
    expect_broken("machine lock", "\"machine release\" is refused", "update it");
}

TEST_F(LadderTest, AnAdapterIsWorthARemark) {
    registry.adapters[0].values.erase("TcpAckFrequency");
    EXPECT_TRUE(climb(server()));
    EXPECT_EQ(rung("adapter").state, RungState::remark);
    EXPECT_EQ(rung("adapter").text, "fast (0.0.0.0) delays acknowledgements, and the driver warns of that");
    registry.adapters.clear();
    EXPECT_TRUE(climb(server()));
    EXPECT_NE(rung("adapter").text.find("no adapter"), std::string::npos);
    EXPECT_EQ(registry.open_keys(), 0U);
}

TEST_F(LadderTest, APingThatIsRefusedBreaksTheLastRung) {
    EXPECT_FALSE(climb([](Peer& peer) {
        peer.hello();
        peer.tells_ping = true;
        for (const char* words : {"commands", "machine get now", "machine release"})
            peer.expect(words, table.at(words));
        peer.expect("ping", {"ready"});
        peer.expect("ping", {"error \"not implemented\"", "ready"});
    }));
    expect_broken("round trip", "not implemented", "machine server");
    EXPECT_EQ(trips.size(), 1U);
}

TEST_F(LadderTest, LinesOfSomethingElseArePassedOver) {
    EXPECT_TRUE(climb([](Peer& peer) {
        peer.hello();
        peer.line("0000\tevent \"probe: contact\"");
        peer.line("garbage");
        peer.line("0007\tready");
        peer.send(std::string(2 * wire::max_line, 'x') + "\r\n");
        peer.serve(table);
    }));
}

TEST_F(LadderTest, TheConfigurationStandsOnTheFirstRungs) {
    ConfigReport config;
    config.looked_at = {{"a.ini", "missing"}, {"a/m2zendrix.ini", "missing"}};
    target.config = &config;
    EXPECT_FALSE(climb());
    expect_broken("configuration", "neither a.ini nor a/m2zendrix.ini", "--name");
    config.findings = {{FindingKind::unreadable, "a.ini", 3, "Entry seen twice"}};
    EXPECT_FALSE(climb());
    expect_broken("configuration", "a.ini:3: Entry seen twice", "in silence");
    config.taken = "a.ini";
    config.findings = {{FindingKind::unknown, "a.ini", 0, "odd"},
                       {FindingKind::near_miss, "a.ini", 2, "prot"}};
    EXPECT_FALSE(climb());
    expect_broken("keys", "a.ini:2: prot", "as it is meant");
    config.findings.pop_back();
    EXPECT_TRUE(climb(server()));
    EXPECT_EQ(rung("keys").state, RungState::remark);
    EXPECT_EQ(rung("keys").text, "a.ini: odd");
    config.findings.clear();
    EXPECT_TRUE(climb(server()));
    EXPECT_EQ(rung("configuration").text, "a.ini");
}

TEST(RoundTripsTest, APercentileIsAMeasuredTime) {
    std::vector<Microseconds> times;
    for (int i = 1; i <= 10; ++i) times.push_back(Microseconds(i));
    EXPECT_EQ(percentile(times, 0.5).count(), 5.0);
    EXPECT_EQ(percentile(times, 0.9).count(), 9.0);
    EXPECT_EQ(percentile(times, 0.99).count(), 10.0);
    EXPECT_EQ(percentile(times, 1.0).count(), 10.0);
    EXPECT_EQ(percentile(times, 0.0).count(), 1.0);
    EXPECT_EQ(percentile({Microseconds(7)}, 0.5).count(), 7.0);
}

}  // namespace
}  // namespace zxhost
