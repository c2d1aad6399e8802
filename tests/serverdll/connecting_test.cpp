// From the connection string to the hello.
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include "clientfixture.h"

namespace {

using asio::ip::tcp;
using std::chrono::milliseconds;
using test::Peer;

class Connecting : public test::ClientFixture {
protected:
    std::string why_not(const std::string& server_string) {
        return test::thrown([&] { CZendrixCOM(nullptr, nullptr, server_string.c_str(), nullptr); });
    }

    // The text of a call on a client whose hello has failed.
    // The script begins when the client waits for the hello.
    std::string without_hello(test::Script script) {
        test::Signal connected;
        server = test::serve_tcp([&](Peer& peer) {
            connected.wait();
            script(peer);
        });
        client = std::make_unique<CZendrixCOM>(
            [](void* user, const char* text) {
                if (std::string(text).starts_with("connected")) static_cast<test::Signal*>(user)->set();
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
        finish();
        return text.substr(begin.size());
    }
};

TEST_F(Connecting, AStringThatLeadsNowhereThrowsItsCause) {
    asio::io_context context;
    tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
    const std::string port = std::to_string(acceptor.local_endpoint().port());
    acceptor.close();
    EXPECT_EQ(why_not("127.0.0.1 " + port),
              "can't connect to \"127.0.0.1 " + port + "\": connection refused");
    EXPECT_EQ(why_not("no.such.host.invalid 7073"),
              "can't connect to \"no.such.host.invalid 7073\": unknown host");
    for (const char* wrong :
         {"", "127.0.0.1", " 7073", "127.0.0.1 0", "127.0.0.1 65536", "127.0.0.1 http", "COM1", "sim.dll"}) {
        EXPECT_EQ(why_not(wrong), std::string("can't connect to \"") + wrong +
                                      "\": expected a host, a blank and a port from 1 to 65535");
    }
    EXPECT_THROW(CZendrixCOM(nullptr, nullptr, nullptr, nullptr), CZendrixError);
}

TEST_F(Connecting, AHostThatDoesNotAnswerIsGivenUpInTime) {
    // A listener whose queue is full drops what comes.
    asio::io_context context;
    tcp::acceptor acceptor(context);
    const tcp::endpoint any(asio::ip::address_v4::loopback(), 0);
    acceptor.open(any.protocol());
    acceptor.bind(any);
    acceptor.listen(0);
    std::vector<tcp::socket> fillers;
    for (int i = 0; i < 4; ++i) {
        fillers.emplace_back(context);
        fillers.back().async_connect(acceptor.local_endpoint(), [](const asio::error_code&) {});
    }
    context.run_for(milliseconds(50));
    options().connect = milliseconds(150);
    const auto start = std::chrono::steady_clock::now();
    const std::string text = why_not("127.0.0.1 " + std::to_string(acceptor.local_endpoint().port()));
    EXPECT_NE(text.find(": no answer in time"), std::string::npos) << text;
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(2000));
}

TEST_F(Connecting, ConnectingTakesThreeSecondsAtTheMost) {
    EXPECT_EQ(options().connect, milliseconds(3000));
    EXPECT_EQ(options().heartbeat, milliseconds(5000));
}

TEST_F(Connecting, TellsItsProgressOnTheCallersThread) {
    server = test::serve_tcp([](Peer& peer) {
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

TEST_F(Connecting, RevisionsOneToThreeAreSpoken) {
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

TEST_F(Connecting, SomethingElseOnThePortIsQuoted) {
    const std::pair<std::string, std::string> rows[] = {
        {"SSH-2.0-x\r\n", "SSH-2.0-x"},
        {"HTTP/1.1 400 Bad Request and much more than that\r\n", "HTTP/1.1 400 Bad Request and much more t"},
        {std::string("\x01\xff\0\n", 4), "\\x01\\xff\\x00"},
        {"0000\thello \"x\" 2.2\r\n", "0000\\x09hello \\\"x\\\" 2.2"},
        {"0001\tready\r\n", "0001\\x09ready"}};
    for (const auto& [sent, quoted] : rows) {
        recording::reset();
        std::string expected = quoted;
        for (std::size_t at = 0; (at = expected.find("\\\"", at)) != std::string::npos; ++at)
            expected.erase(at, 1);
        EXPECT_EQ(without_hello([&bytes = sent](Peer& peer) {
                      peer.send(bytes);
                      peer.wait_for_close();
                  }),
                  "not a machine server: it says \"" + expected + "\"");
    }
}

TEST_F(Connecting, AServerThatSaysNoHelloIsNone) {
    EXPECT_EQ(without_hello([](Peer& peer) { peer.close(); }),
              "no hello from the server: closed by the server");
    recording::reset();
    EXPECT_EQ(without_hello([](Peer& peer) { peer.reset(); }),
              "no hello from the server: reset by the server");
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
    options().hello = milliseconds(5000);
    EXPECT_EQ(
        without_hello([](Peer& peer) {
            peer.send(std::string(5000, 'x'));
            peer.wait_for_close();
        }),
        "not a machine server: it says \"" + std::string(40, 'x') + "\" and no hello: no end of the line");
}

TEST_F(Connecting, WhatComesRightBehindTheHelloIsNotLost) {
    test::Signal go;
    play([&go](Peer& peer) {
        peer.send("0000\thello \"Fake\" 2.2 machine\r\n0000\tevent \"ear");
        go.wait();
        peer.send("ly\"\r\n");
        peer.wait_for_close();
    });
    go.set();
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), std::vector<std::string>{"event early"});
    finish();
}

}  // namespace
