// Losing the server, at any moment and in any way: every wait ends, the host is told once.
#include <atomic>
#include <future>
#include <thread>

#include "clientfixture.h"

namespace {

using test::Peer;
using test::Request;
using Texts = std::vector<std::string>;
using std::chrono::milliseconds;

class Loss : public test::RoadFixture {
protected:
    void SetUp() override {
        ClientFixture::SetUp();
        options().heartbeat = milliseconds(300);
    }
};

struct Way {
    std::string name;
    std::string cause;  // or, if it is the road's
    std::function<void(Peer&)> lose;
    std::string (test::Server::*cause_of)() const = nullptr;

    std::string text(const test::Server& server) const {
        return "machine connection lost: " + (cause_of == nullptr ? cause : (server.*cause_of)());
    }
};

std::vector<Way> ways() {
    return {
        {"closed", "", [](Peer& peer) { peer.close(); }, &test::Server::cause_of_close},
        {"reset", "", [](Peer& peer) { peer.reset(); }, &test::Server::cause_of_reset},
        {"half a line", "",
         [](Peer& peer) {
             peer.send("0000\tevent \"hal");
             peer.close();
         },
         &test::Server::cause_of_close},
        {"silent", "the server is silent",
         [](Peer& peer) {
             peer.answers_ping = false;
             peer.wait_for_close();
         }},
        {"garbage", "the server sent something that is no line of the protocol: \"\\x00\\xffgarbage\"",
         [](Peer& peer) {
             peer.send(std::string_view("\0\xffgarbage\r\n", 11));
             peer.wait_for_close();
         }},
        {"a line without an id", "the server sent something that is no line of the protocol: \"data 1\"",
         [](Peer& peer) {
             peer.line("data 1");
             peer.wait_for_close();
         }},
        {"an error without a text",
         "the server sent something that is no line of the protocol: \"0001\\x09error 16\"",
         [](Peer& peer) {
             peer.line("0001\terror 16");
             peer.wait_for_close();
         }},
        {"an over-long line", "the server sent an over-long line: \"" + std::string(40, 'x') + "...\"",
         [](Peer& peer) {
             const std::string piece(65536, 'x');
             for (int i = 0; i < 17; ++i) peer.send(piece);
             peer.wait_for_close();
         }},
    };
}

// The same loss for each state in which it can meet a client.
TEST_P(Loss, EndsEveryWaitAndIsToldOnce) {
    for (const Way& way : ways()) {
        SCOPED_TRACE(way.name);
        recording::reset();
        test::Record told;
        play([&](Peer& peer) {
            peer.hello();
            peer.expect("init", {"accepted"});
            peer.line("0000\tevent \"whole\"");
            for (int i = 0; i < 2; ++i) peer.next();
            if (!GetParam().keeps) told.wait_for(1);
            way.lose(peer);
        });
        told.install(*client);
        const std::string text = way.text(*server);
        client->ThrowExceptions(true);
        long running = 0;
        EXPECT_TRUE(client->Init(&running));
        const auto start = std::chrono::steady_clock::now();
        auto query = std::async(std::launch::async, [&] {
            double value = 0.0;
            return test::thrown([&] { client->Get("x", &value); });
        });
        long tid = 9;
        EXPECT_EQ(test::thrown([&] { client->Init(&tid); }), text);
        EXPECT_EQ(tid, 0);
        EXPECT_EQ(query.get(), text);
        EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(5000));
        EXPECT_FALSE(client->HasConnection());
        ASSERT_TRUE(told.wait_for(2));
        EXPECT_EQ(told.all(), (Texts{"event whole", "complete 0"}));
        EXPECT_EQ(test::thrown([&] { client->Master(); }), text);
        EXPECT_EQ(test::thrown([&] { client->Execute("", *std::make_unique<Texts>(), nullptr); }),
                  "invalid argument");
        EXPECT_EQ(told.all().size(), 2U);
        EXPECT_EQ(recording::error_log(), Texts{"CZendrixCOM: " + text});
        finish();
        EXPECT_EQ(told.all().size(), 2U);
    }
    finish();
}

TEST_P(Loss, IsNoticedWhenNobodyAsks) {
    for (const Way& way : ways()) {
        SCOPED_TRACE(way.name);
        test::Record told;
        Gate ready;
        play([&](Peer& peer) {
            peer.hello();
            ready.wait();
            way.lose(peer);
        });
        told.install(*client);
        ready.open();
        ASSERT_TRUE(told.wait_for(1));
        EXPECT_EQ(told.all(), Texts{"complete 0"});
        EXPECT_FALSE(client->HasConnection());
        finish();
    }
    finish();
}

TEST_P(Loss, AServerThatAnswersItsHeartbeatsIsAlive) {
    options().heartbeat = milliseconds(100);
    Gate enough;
    play([&enough](Peer& peer) {
        peer.hello();
        peer.tells_ping = true;
        for (int i = 0; i < 5; ++i) peer.expect("ping", {"ready"});
        peer.tells_ping = false;
        enough.open();
        peer.wait_for_close();
    });
    ASSERT_TRUE(enough.wait());
    EXPECT_TRUE(client->HasConnection());
    EXPECT_EQ(record.all(), Texts());
    finish();
}

TEST_P(Loss, ACallerWhoWaitsForLongKeepsTheHeartbeat) {
    options().heartbeat = milliseconds(100);
    play([](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("init", {"accepted"});
        peer.tells_ping = true;
        for (int i = 0; i < 5; ++i) peer.expect("ping", {"ready"});
        peer.tells_ping = false;
        peer.answer(request, {"ready"});
        peer.wait_for_close();
    });
    client->SetSync3(ZX_SYNC);
    long tid = 0;
    EXPECT_TRUE(client->Init(&tid));
    finish();
}

TEST_P(Loss, AServerThatTakesNoRequestsIsLostInTime) {
    options().write = milliseconds(200);
    options().heartbeat = milliseconds(60000);
    Gate done;
    play([&done](Peer& peer) {
        peer.hello();
        done.wait();
        peer.close();
    });
    client->ThrowExceptions(true);
    const std::string line = "send \"b\" \"" + std::string(1000000, 'x') + "\"";
    std::vector<std::future<std::string>> calls;
    for (int i = 0; i < 20; ++i) {
        calls.push_back(std::async(std::launch::async, [&] {
            std::vector<std::string> reply;
            return test::thrown([&] { client->Execute(line.c_str(), reply, nullptr); });
        }));
    }
    for (auto& call : calls) EXPECT_EQ(call.get(), "machine connection lost: the server takes no requests");
    done.open();
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"complete 0"});
    finish();
}

TEST_P(Loss, NoThreadIsLeftBehind) {
    const auto lose = [this](const Way& way) {
        Gate connected;
        play([&](Peer& peer) {
            peer.hello();
            connected.wait();
            way.lose(peer);
        });
        connected.open();
        if (way.name != "silent") {
            EXPECT_TRUE(record.wait_for(1));
        }
        record.clear();
        finish();
    };
    // Some threads come with the first time and stay, a sanitizer's own for one.
    lose(ways().front());
    const std::ptrdiff_t before = test_support::thread_count();
    // No trace of the scope: on Windows GoogleTest starts a thread of its own with the first one.
    for (const Way& way : ways()) {
        lose(way);
        EXPECT_TRUE(test_support::threads_sink_to(before)) << way.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Transports, Loss, testing::ValuesIn(test::all_transports()), test::road_name);

}  // namespace
