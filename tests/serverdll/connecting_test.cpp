// From the connection string to the hello.
#include "clientfixture.h"

namespace {

using std::chrono::milliseconds;
using test::Peer;

class Connecting : public test::RoadFixture {
protected:
    // The text of a call on a client whose hello has failed.
    // The script begins when the client waits for the hello.
    std::string without_hello(test::Script script) {
        Gate connected;
        server = serve_script([&](Peer& peer) {
            connected.wait();
            script(peer);
        });
        client = std::make_unique<CZendrixCOM>(
            [](void* user, const char* text) {
                if (std::string(text).starts_with("connected")) static_cast<Gate*>(user)->open();
            },
            &connected, server->connection_string().c_str(), nullptr);
        record.install(*client);
        EXPECT_FALSE(client->HasConnection());
        long tid = 7;
        EXPECT_FALSE(client->Init(&tid));
        EXPECT_EQ(tid, 0);
        client->ThrowExceptions(true);
        std::string text = test::thrown([&] { client->Master(); });
        const std::string begin = "no machine connection to \"" + server->connection_string() + "\": ";
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        EXPECT_EQ(recording::error_log(), std::vector<std::string>{"CZendrixCOM: " + text});
        EXPECT_EQ(record.all(), std::vector<std::string>());
        closed = server->cause_of_close();
        was_reset = server->cause_of_reset();
        finish();
        return text.substr(begin.size());
    }

    // What the last server's road says of an end.
    std::string closed;
    std::string was_reset;
};

TEST_P(Connecting, ConnectingTakesThreeSecondsAtTheMost) {
    EXPECT_EQ(options().connect, milliseconds(3000));
    EXPECT_EQ(options().heartbeat, milliseconds(5000));
}

TEST_P(Connecting, TellsItsProgressOnTheCallersThread) {
    server = serve_script([](Peer& peer) {
        peer.hello("2.1");
        peer.wait_for_close();
    });
    const std::string name = server->connection_string();
    client = std::make_unique<CZendrixCOM>(
        [](void* user, const char* text) { static_cast<test::Record*>(user)->add(text); }, &record,
        name.c_str(), nullptr);
    EXPECT_TRUE(client->HasConnection());
    EXPECT_EQ(record.all(),
              (std::vector<std::string>{"connecting to \"" + name + "\"", "connected, waiting for the hello",
                                        "machine \"Fake\", protocol revision 2.1, simulated"}));
    for (const std::thread::id id : record.threads()) EXPECT_EQ(id, std::this_thread::get_id());
    EXPECT_EQ(client->GetMajorRevision(), 2);
    EXPECT_EQ(client->GetMinorRevision(), 1);
    EXPECT_EQ(client->GetLatency(), -1);
}

TEST_P(Connecting, RevisionsOneToThreeAreSpoken) {
    for (const char* revision : {"1.0", "2.1", "2.2", "3.0", "3.17"}) {
        play([revision](Peer& peer) {
            peer.hello(revision);
            peer.expect("master", {"ready"});
            peer.wait_for_close();
        });
        EXPECT_TRUE(client->HasConnection()) << revision;
        EXPECT_TRUE(client->Master());
        EXPECT_GE(client->GetLatency(), 0);
        finish();
    }
    for (const std::string revision : {"0.9", "4.0", "9999.0"}) {
        recording::reset();
        EXPECT_EQ(without_hello([&](Peer& peer) {
                      peer.hello(revision);
                      peer.wait_for_close();
                  }),
                  "protocol revision " + revision + " is not known: 1 to 3 are");
    }
    finish();
}

TEST_P(Connecting, SomethingElseOnThePortIsQuoted) {
    const std::pair<std::string, std::string> rows[] = {
        {"SSH-2.0-x\r\n", "SSH-2.0-x"},
        {"HTTP/1.1 400 Bad Request and much more than that\r\n", "HTTP/1.1 400 Bad Request and much more t"},
        {std::string("\x01\xff\0\n", 4), "\\x01\\xff\\x00"},
        {"0000\thello \"x\" 2.2\r\n", "0000\\x09hello \\\"x\\\" 2.2"},
        {"0001\tready\r\n", "0001\\x09ready"}};
    // Where the hello is asked for, whatever comes first is of somebody else, and the wait goes on.
    const std::string end = GetParam().greets ? "" : " and no hello: silent for 100 ms";
    if (!GetParam().greets) options().hello = milliseconds(100);
    for (const auto& [sent, quoted] : rows) {
        recording::reset();
        std::string expected = quoted;
        for (std::size_t at = 0; (at = expected.find("\\\"", at)) != std::string::npos; ++at)
            expected.erase(at, 1);
        EXPECT_EQ(without_hello([&bytes = sent](Peer& peer) {
                      peer.send(bytes);
                      peer.wait_for_close();
                  }),
                  "not a machine server: it says \"" + expected + "\"" + end);
    }
}

TEST_P(Connecting, AServerThatSaysNoHelloIsNone) {
    std::string text = without_hello([](Peer& peer) { peer.close(); });
    EXPECT_EQ(text, "no hello from the server: " + closed);
    recording::reset();
    text = without_hello([](Peer& peer) { peer.reset(); });
    EXPECT_EQ(text, "no hello from the server: " + was_reset);
    recording::reset();
    options().hello = milliseconds(100);
    EXPECT_EQ(without_hello([](Peer& peer) { peer.wait_for_close(); }),
              "no hello from the server: silent for 100 ms");
    recording::reset();
    EXPECT_EQ(without_hello([](Peer& peer) {
                  peer.send("0000\thello \"ha");
                  peer.wait_for_close();
              }),
              "not a machine server: it says \"0000\\x09hello \"ha\" and no hello: silent for 100 ms");
    recording::reset();
    if (GetParam().greets) options().hello = milliseconds(5000);
    EXPECT_EQ(without_hello([](Peer& peer) {
                  peer.send(std::string(5000, 'x'));
                  peer.wait_for_close();
              }),
              "not a machine server: it says \"" + std::string(40, 'x') +
                  "\" and no hello: " + (GetParam().greets ? "no end of the line" : "silent for 100 ms"));
}

TEST_P(Connecting, WhatComesRightBehindTheHelloIsNotLost) {
    Gate go;
    play([&go](Peer& peer) {
        peer.send("0000\thello \"Fake\" 2.2 machine\r\n0000\tevent \"ear");
        go.wait();
        peer.send("ly\"\r\n");
        peer.wait_for_close();
    });
    go.open();
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), std::vector<std::string>{"event early"});
    finish();
}

INSTANTIATE_TEST_SUITE_P(Transports, Connecting, testing::ValuesIn(test::all_transports()), test::road_name);

}  // namespace
