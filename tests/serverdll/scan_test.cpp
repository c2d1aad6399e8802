// Points on their way from the server to the scan callback: none lost, none twice, memory bounded.
#include <atomic>

#include "clientfixture.h"

namespace {

using test::Peer;
using test::Request;
using Texts = std::vector<std::string>;
using std::chrono::milliseconds;

class Scanning : public test::ClientFixture {
protected:
    // Plays a scan with these lines behind its acceptance, and gives what the callbacks told, the id as ID.
    Texts scan(const std::vector<std::string>& lines, std::size_t expected) {
        play([&lines](Peer& peer) {
            peer.hello();
            const Request request = peer.expect("scan", {"accepted"});
            peer.answer(request, lines);
            peer.wait_for_close();
        });
        long tid = 0;
        EXPECT_TRUE(client->Scan(0, nullptr, &tid));
        EXPECT_TRUE(record.wait_for(expected));
        Texts all = record.all();
        for (std::string& text : all) {
            const std::size_t at = text.find(std::to_string(tid));
            if (text[0] != 'p' && at != std::string::npos) text.replace(at, std::to_string(tid).size(), "ID");
        }
        return all;
    }
};

TEST_F(Scanning, PointsOfAnyWidthComeInOrder) {
    EXPECT_EQ(
        scan({"point 1 1 2", "point 2 3 4", "point 3 5", "point 4 6 7 8", "point 5 nan inf -0.5", "ready"},
             6),
        (Texts{"point 1 2", "point 3 4", "point 5", "point 6 7 8", "point nan inf -0.5", "complete ID"}));
}

TEST_F(Scanning, AGapEndsInAnError) {
    EXPECT_EQ(scan({"point 1 1", "point 3 3", "point 4 4", "ready"}, 3),
              (Texts{"point 1", "error ID scan: points lost", "complete ID"}));
}

TEST_F(Scanning, ALostBeginEndsInAnError) {
    EXPECT_EQ(scan({"point 2 3", "point 3 4", "ready"}, 2),
              (Texts{"error ID scan: points lost", "complete ID"}));
}

TEST_F(Scanning, APointThatComesTwiceEndsInAnError) {
    EXPECT_EQ(scan({"point 1 1", "point 2 2", "point 2 2", "point 3 3", "ready"}, 4),
              (Texts{"point 1", "point 2", "error ID scan: point received twice", "complete ID"}));
}

TEST_F(Scanning, APointThatIsNoneEndsInAnError) {
    for (const char* broken :
         {"point 2 x", "point 2", "point 2 ", "point 2 1 2x", "point", "point x 1", "point 2,1"}) {
        EXPECT_EQ(scan({"point 1 1", broken, "point 3 3", "ready"}, 3),
                  (Texts{"point 1", "error ID scan: point not understood", "complete ID"}))
            << broken;
        finish();
        record.clear();
    }
}

TEST_F(Scanning, ACutScanEndsInAnErrorBeforeTheLossIsTold) {
    play([](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("scan", {"accepted", "point 1 1", "point 2 2"});
        peer.send(request.id + "\tpoint 3 3");
        peer.close();
    });
    long tid = 0;
    EXPECT_TRUE(client->Scan(0, nullptr, &tid));
    ASSERT_TRUE(record.wait_for(4));
    EXPECT_EQ(record.all(), (Texts{"point 1", "point 2",
                                   "error " + std::to_string(tid) + " scan: points lost", "complete 0"}));
    finish();
}

TEST_F(Scanning, TwoScansAtOnceKeepTheirNumbersApart) {
    play([](Peer& peer) {
        peer.hello();
        const Request one = peer.expect("scan", {"accepted"});
        const Request two = peer.expect("scan", {"accepted"});
        for (int i = 1; i <= 3; ++i) {
            peer.answer(one, {"point " + std::to_string(i) + " 1"});
            peer.answer(two, {"point " + std::to_string(i) + " 2"});
        }
        peer.answer(one, {"ready"});
        peer.answer(two, {"point 4 2", "ready"});
        peer.wait_for_close();
    });
    long tid = 0;
    EXPECT_TRUE(client->Scan(0, nullptr, &tid));
    EXPECT_TRUE(client->Scan(0, nullptr, &tid));
    ASSERT_TRUE(record.wait_for(9));
    EXPECT_EQ(record.all()[7], "point 2");
    EXPECT_EQ(record.all()[8], "complete " + std::to_string(tid));
    finish();
}

TEST_F(Scanning, ARemovedCallbackGetsNoFurtherPoint) {
    play([](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("scan", {"accepted"});
        std::string text;
        for (int i = 1; i <= 5000; ++i) text += request.id + "\tpoint " + std::to_string(i) + " 1\r\n";
        peer.send(text);
        peer.answer(request, {"ready"});
        peer.wait_for_close();
    });
    struct State {
        std::atomic<int> count = 0;
        std::atomic<bool> removed = false;
        std::atomic<int> late = 0;
        Gate some;
    } state;
    client->SetScanCallback(
        [](void* user, unsigned, double* const) {
            State& at = *static_cast<State*>(user);
            if (at.removed) ++at.late;
            if (++at.count == 10) at.some.open();
        },
        &state);
    long tid = 0;
    EXPECT_TRUE(client->Scan(0, nullptr, &tid));
    ASSERT_TRUE(state.some.wait());
    client->SetScanCallback(nullptr, nullptr);
    state.removed = true;
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(state.late, 0);
    finish();
}

// A callback that stays away for a while, and what a server can send meanwhile.
struct Blocked {
    Gate inside;
    Gate leave;
    std::atomic<long> points = 0;

    static void callback(void* user, unsigned, double* const) {
        Blocked& at = *static_cast<Blocked*>(user);
        if (at.points++ > 0) return;
        at.inside.open();
        at.leave.wait();
    }
};

TEST_F(Scanning, ABlockedCallbackMakesTheServerWaitAndLosesNothing) {
    options().queue_pause = 100000;
    Blocked blocked;
    std::atomic<long> sent = 0;
    Gate full;
    Gate drained;
    play([&](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("scan", {"accepted"});
        std::string rest;
        // The connection takes no more when both ends' buffers are full and nobody reads.
        for (int refusals = 0; refusals < 20;) {
            for (int n = rest.empty() ? 1000 : 0; n > 0; --n)
                rest += request.id + "\tpoint " + std::to_string(++sent) + " 1.5 2.5 3.5 4.5\r\n";
            const std::size_t count = peer.send_some(rest);
            refusals = count == 0 ? refusals + 1 : 0;
            if (count == 0) std::this_thread::sleep_for(milliseconds(10));
            rest.erase(0, count);
        }
        full.open();
        peer.send(rest);
        peer.answer(request, {"ready"});
        peer.expect("get \"x\"", {"data 1", "ready"});
        peer.wait_for_close();
    });
    client->SetScanCallback(&Blocked::callback, &blocked);
    long tid = 0;
    EXPECT_TRUE(client->Scan(0, nullptr, &tid));
    ASSERT_TRUE(blocked.inside.wait());
    ASSERT_TRUE(full.wait());
    EXPECT_TRUE(client->HasConnection());
    // A caller who waits reads on, over the bound.
    double value = 0.0;
    EXPECT_TRUE(client->Get("x", &value));
    blocked.leave.open();
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"complete " + std::to_string(tid)});
    EXPECT_EQ(blocked.points, sent);
    finish();
}

TEST_F(Scanning, AQueueOverItsLimitEndsTheConnection) {
    options().queue_pause = 10000;
    options().queue_limit = 1000000;
    Blocked blocked;
    play([](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("scan", {"accepted"});
        std::string values;
        for (int i = 0; i < 50; ++i) values += " 1";
        std::string text;
        for (int i = 1; i <= 65000; ++i)
            text += request.id + "\tpoint " + std::to_string(i) + values + "\r\n";
        peer.send(text);
        peer.wait_for_close();
    });
    client->SetScanCallback(&Blocked::callback, &blocked);
    client->ThrowExceptions(true);
    long tid = 0;
    EXPECT_TRUE(client->Scan(0, nullptr, &tid));
    ASSERT_TRUE(blocked.inside.wait());
    double value = 0.0;
    EXPECT_EQ(test::thrown([&] { client->Get("x", &value); }),
              "machine connection lost: the callbacks are too far behind");
    EXPECT_FALSE(client->HasConnection());
    blocked.leave.open();
    ASSERT_TRUE(record.wait_for(2));
    EXPECT_EQ(record.all(), (Texts{"error " + std::to_string(tid) + " scan: points lost", "complete 0"}));
    finish();
}

}  // namespace
