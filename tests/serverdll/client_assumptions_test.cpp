// What the driver takes for granted of a client, over every transport: which thread, which order, an id
// before its completion, calls inside callbacks, exceptions, replacing, closing.
#include <atomic>
#include <future>

#include "clientfixture.h"

namespace {

using test::Peer;
using test::Request;
using Texts = std::vector<std::string>;
using std::chrono::milliseconds;

using Assumptions = test::RoadFixture;

TEST_P(Assumptions, TheIdIsStoredBeforeTheRequestLeaves) {
    long tid = 0;
    std::atomic<long> seen = 0;
    play([&](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("init");
        seen = std::atomic_ref<long>(tid).load();
        EXPECT_EQ(seen.load(), std::stol(request.id));
        peer.answer(request, {"accepted", "ready"});
        peer.wait_for_close();
    });
    EXPECT_TRUE(client->Init(&tid));
    EXPECT_EQ(tid, seen.load());
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"complete " + std::to_string(tid)});
    finish();
}

TEST_P(Assumptions, IdsAreOneSeriesForAllClientsOfTheProcess) {
    long first = 0;
    long second = 0;
    for (long* tid : {&first, &second}) {
        play([](Peer& peer) {
            peer.hello();
            peer.expect("init", {"accepted", "ready"});
            peer.wait_for_close();
        });
        EXPECT_TRUE(client->Init(tid));
        finish();
    }
    EXPECT_GT(second, first);
    finish();
}

TEST_P(Assumptions, CallbacksRunOnOneThreadThatIsNotTheCallers) {
    play([](Peer& peer) {
        peer.hello();
        peer.line("0000\tevent \"one\"");
        peer.expect("get \"x\"", {"error \"two\"", "ready"});
        peer.expect("init", {"accepted", "warning \"three\"", "point 1 4", "ready"});
        peer.wait_for_close();
    });
    double value = 0.0;
    long tid = 0;
    EXPECT_FALSE(client->Get("x", &value));
    EXPECT_TRUE(client->Init(&tid));
    ASSERT_TRUE(record.wait_for(5));
    for (const std::thread::id id : record.threads()) {
        EXPECT_EQ(id, record.threads()[0]);
        EXPECT_NE(id, std::this_thread::get_id());
    }
    finish();
}

TEST_P(Assumptions, WhatPrecedesTheEndOfATransactionIsToldBeforeItsCompletion) {
    play([](Peer& peer) {
        peer.hello();
        const Request request = peer.expect("scan");
        peer.send("0000\tevent \"measurement begin\"\r\n");
        peer.answer(request, {"accepted"});
        std::string text;
        for (int i = 1; i <= 500; ++i)
            text += request.id + "\tpoint " + std::to_string(i) + " " + std::to_string(i) + " 0.5\r\n";
        peer.send(text);
        peer.send("0000\tevent \"measurement: end\"\r\n");
        peer.answer(request, {"warning \"w\"", "error \"probe: no contact\"", "ready"});
        peer.wait_for_close();
    });
    long tid = 0;
    EXPECT_TRUE(client->Scan(0, nullptr, &tid));
    const std::string id = std::to_string(tid);
    ASSERT_TRUE(record.wait_for(505));
    Texts expected = {"event measurement begin"};
    for (int i = 1; i <= 500; ++i) expected.push_back("point " + std::to_string(i) + " 0.5");
    for (const char* text :
         {"event measurement: end", "warning ID w", "error ID probe: no contact", "complete ID"}) {
        expected.emplace_back(text);
        if (const std::size_t at = expected.back().find("ID"); at != std::string::npos)
            expected.back().replace(at, 2, id);
    }
    EXPECT_EQ(record.all(), expected);
    finish();
}

TEST_P(Assumptions, AnErrorIsToldBeforeTheCallFails) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("get \"x\"",
                    {"warning \"careful\"", "error \"unknown axis\"", "error \"and more\"", "ready"});
        peer.expect("move", {"error \"not initialised\"", "ready"});
        peer.expect("get \"x\"", {"error \"unknown axis\"", "ready"});
        peer.wait_for_close();
    });
    double value = 0.0;
    EXPECT_FALSE(client->Get("x", &value));
    EXPECT_EQ(record.all(), (Texts{"warning 0 careful", "error 0 unknown axis", "error 0 and more"}));
    client->ThrowExceptions(true);
    long tid = 3;
    EXPECT_EQ(test::thrown([&] { client->Move(0, nullptr, &tid); }), "not initialised");
    EXPECT_EQ(tid, 0);
    EXPECT_EQ(record.all().size(), 4U);
    EXPECT_EQ(test::thrown([&] { client->Get("x", &value); }), "unknown axis");
    client->ThrowExceptions(false);
    EXPECT_EQ(record.all().size(), 5U);
    finish();
}

TEST_P(Assumptions, TheWaitForTheErrorCallbackIsBounded) {
    options().error_callback = milliseconds(50);
    Gate held;
    play([](Peer& peer) {
        peer.hello();
        peer.line("0000\tevent \"hold\"");
        peer.expect("get \"x\"", {"error \"unknown axis\"", "ready"});
        peer.wait_for_close();
    });
    Gate inside;
    std::pair<Gate*, Gate*> gates{&inside, &held};
    client->SetAsyncCallback(
        [](void* user, const char*) {
            auto& [in, out] = *static_cast<std::pair<Gate*, Gate*>*>(user);
            in->open();
            out->wait();
        },
        &gates);
    // The event may have come before the callback was there; then nothing holds the error up.
    double value = 0.0;
    EXPECT_FALSE(client->Get("x", &value));
    held.open();
    ASSERT_TRUE(record.wait_for(1));
    finish();
}

TEST_P(Assumptions, ModeSyncWaitsForTheEnd) {
    Gate go;
    std::atomic<bool> ended = false;
    play([&](Peer& peer) {
        peer.hello();
        Request request = peer.expect("init", {"accepted"});
        go.wait();
        ended = true;
        peer.answer(request, {"ready"});
        peer.expect("init", {"accepted", "error \"aborted\"", "ready"});
        peer.expect("movehome", {"accepted", "data 1", "ready"});
        peer.wait_for_close();
    });
    EXPECT_TRUE(client->SetSync3(ZX_SYNC));
    SyncType mode = ZX_ASYNC;
    EXPECT_TRUE(client->GetSync3(&mode));
    EXPECT_EQ(mode, ZX_SYNC);
    long tid = 0;
    auto call = std::async(std::launch::async, [&] { return client->Init(&tid); });
    go.open();
    EXPECT_TRUE(call.get());
    EXPECT_TRUE(ended);
    const std::string first = std::to_string(tid);
    EXPECT_FALSE(client->Init(&tid));
    EXPECT_NE(tid, 0);  // it did begin
    client->SetSync3(ZX_ASYNC);
    Texts reply;
    EXPECT_TRUE(client->Execute("movehome", reply, nullptr));  // waits in either mode
    EXPECT_EQ(reply, Texts{"1"});
    ASSERT_TRUE(record.wait_for(3));
    const std::string second = std::to_string(tid);
    EXPECT_EQ(record.all(),
              (Texts{"complete " + first, "error " + second + " aborted", "complete " + second}));
    finish();
}

struct Inside {
    CZendrixCOM& client;
    test::Record& record;
};

TEST_P(Assumptions, ACallbackMayCallAnything) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        peer.line("0000\tevent \"go\"");
        peer.expect("get \"x\"", {"data 4.5", "ready"});
        peer.expect("get \"y\"", {"error \"unknown axis\"", "ready"});
        peer.expect("init", {"accepted", "ready"});
        peer.expect("init", {"error \"wrong state\"", "ready"});
        peer.wait_for_close();
    });
    Inside inside{*client, record};
    client->SetAsyncCallback(
        [](void* user, const char*) {
            const Inside& in = *static_cast<Inside*>(user);
            double value = 0.0;
            long tid = 0;
            in.record.add(in.client.Get("x", &value) ? "x " + std::to_string(value) : "no x");
            in.record.add(in.client.Get("y", &value) ? "y" : "no y");
            in.record.add(in.client.Init(&tid) && tid > 0 ? "begun" : "not begun");
            in.record.add(in.client.Init(&tid) || tid != 0 ? "begun" : "not begun");
        },
        &inside);
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(record.wait_for(7));
    const Texts all = record.all();
    EXPECT_EQ(Texts(all.begin(), all.begin() + 4),
              (Texts{"x 4.500000", "error 0 unknown axis", "no y", "begun"}));
    EXPECT_EQ(all[4].substr(all[4].size() - 11), "wrong state");
    EXPECT_EQ(all[5], "not begun");
    EXPECT_EQ(all[6].substr(0, 9), "complete ");
    for (const std::thread::id id : record.threads()) EXPECT_EQ(id, record.threads()[0]);
    finish();
}

TEST_P(Assumptions, AnErrorCallbackWhoseOwnCallFailsComesToAnEnd) {
    play([](Peer& peer) {
        peer.hello();
        peer.serve({});
    });
    Inside inside{*client, record};
    client->SetErrorMsgCallback(
        [](void* user, long, const char*) {
            const Inside& in = *static_cast<Inside*>(user);
            in.record.add("told");
            in.client.Reset();
        },
        &inside);
    EXPECT_FALSE(client->Master());
    EXPECT_EQ(record.all(), Texts(4, "told"));
    finish();
}

TEST_P(Assumptions, AnExceptionFromACallbackIsLoggedAndTheNextOneRuns) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        for (const char* text : {"zendrix", "standard", "other", "good"})
            peer.line(std::string("0000\tevent \"") + text + "\"");
        peer.wait_for_close();
    });
    client->SetAsyncCallback(
        [](void* user, const char* text) {
            if (std::string(text) == "zendrix") throw CZendrixError("one");
            if (std::string(text) == "standard") throw std::runtime_error("two");
            if (std::string(text) == "other") throw 3;
            static_cast<test::Record*>(user)->add(text);
        },
        &record);
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"good"});
    EXPECT_EQ(recording::error_log(),
              (Texts{"CZendrixCOM: an exception left the async callback: one",
                     "CZendrixCOM: an exception left the async callback: two",
                     "CZendrixCOM: an exception left the async callback: of an unknown kind"}));
    finish();
}

TEST_P(Assumptions, ReplacingReturnsOnlyWhenTheOldCallbackIsNotRunning) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        peer.line("0000\tevent \"one\"");
        peer.expect("master", {"ready"});
        peer.line("0000\tevent \"two\"");
        peer.wait_for_close();
    });
    struct State {
        Gate inside;
        Gate leave;
        std::atomic<bool> left = false;
    } state;
    client->SetAsyncCallback(
        [](void* user, const char*) {
            State& at = *static_cast<State*>(user);
            at.inside.open();
            at.leave.wait();
            at.left = true;
        },
        &state);
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(state.inside.wait());
    auto replaced = std::async(std::launch::async, [&] {
        record.install(*client);
        return state.left.load();
    });
    EXPECT_EQ(replaced.wait_for(milliseconds(20)), std::future_status::timeout);
    state.leave.open();
    EXPECT_TRUE(replaced.get());
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"event two"});
    finish();
}

TEST_P(Assumptions, ACallbackMayReplaceItself) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        peer.line("0000\tevent \"one\"");
        peer.line("0000\tevent \"two\"");
        peer.wait_for_close();
    });
    Inside inside{*client, record};
    client->SetAsyncCallback(
        [](void* user, const char*) {
            const Inside& in = *static_cast<Inside*>(user);
            ZXAsyncCallback function = nullptr;
            void* data = nullptr;
            in.client.GetAsyncCallback(function, data);
            in.record.add(data == user ? "mine" : "not mine");
            in.record.install(in.client);
        },
        &inside);
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(record.wait_for(2));
    EXPECT_EQ(record.all(), (Texts{"mine", "event two"}));
    finish();
}

TEST_P(Assumptions, CallbacksAreFetchedAsTheyWereSet) {
    play([](Peer& peer) {
        peer.hello();
        peer.wait_for_close();
    });
    int user = 0;
    const ZXMessageCallback message = [](void*, long, const char*) {};
    ZXMessageCallback got = nullptr;
    void* got_user = nullptr;
    client->SetErrorMsgCallback(message, &user);
    client->GetErrorMsgCallback(got, got_user);
    EXPECT_EQ(got, message);
    EXPECT_EQ(got_user, &user);
    client->SetWarningMsgCallback(nullptr, &user);
    client->GetWarningMsgCallback(got, got_user);
    EXPECT_EQ(got, nullptr);
    EXPECT_EQ(got_user, &user);
    finish();
}

TEST_P(Assumptions, ClosingFailsThoseWhoWait) {
    Gate arrived;
    play([&arrived](Peer& peer) {
        peer.hello();
        for (int i = 0; i < 3; ++i) peer.next();
        arrived.open();
        peer.wait_for_close();
    });
    client->ThrowExceptions(true);
    std::vector<std::future<std::string>> calls;
    CZendrixCOM& closing = *client;
    for (int i = 0; i < 3; ++i) {
        calls.push_back(std::async(std::launch::async, [&closing, i] {
            double value = 0.0;
            long tid = 0;
            return test::thrown([&] { i == 0 ? closing.Init(&tid) : closing.Get("x", &value); });
        }));
    }
    arrived.wait();
    client.reset();
    for (auto& call : calls) EXPECT_EQ(call.get(), "the client is being closed");
    EXPECT_EQ(record.all(), Texts());
    finish();
}

TEST_P(Assumptions, NoCallbackRunsAfterClosing) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        std::string text;
        for (int i = 0; i < 20000; ++i) text += "0000\tevent \"e\"\r\n";
        peer.send(text);
        peer.wait_for_close();
    });
    struct State {
        std::atomic<bool> closed = false;
        std::atomic<int> count = 0;
        std::atomic<int> late = 0;
        Gate some;
    } state;
    client->SetAsyncCallback(
        [](void* user, const char*) {
            State& at = *static_cast<State*>(user);
            if (at.closed) ++at.late;
            if (++at.count == 10) at.some.open();
        },
        &state);
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(state.some.wait());
    client.reset();
    state.closed = true;
    EXPECT_EQ(state.late, 0);
    finish();
}

TEST_P(Assumptions, ACallInsideACallbackFailsWhenTheClientIsClosed) {
    Gate arrived;
    play([&](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        peer.line("0000\tevent \"go\"");
        peer.expect("get \"x\"");
        arrived.open();
        peer.wait_for_close();
    });
    Inside inside{*client, record};
    client->SetAsyncCallback(
        [](void* user, const char*) {
            const Inside& in = *static_cast<Inside*>(user);
            double value = 0.0;
            in.record.add(test::thrown([&] { in.client.Get("x", &value); }));
        },
        &inside);
    client->ThrowExceptions(true);
    EXPECT_TRUE(client->Master());
    arrived.wait();
    client.reset();
    EXPECT_EQ(record.all(), Texts{"the client is being closed"});
    finish();
}

TEST_P(Assumptions, ManyThreadsAskAtOnceAndEachGetsItsOwnAnswer) {
    play([](Peer& peer) {
        peer.hello();
        try {
            for (;;) {
                const Request request = peer.next();
                const std::string axis = request.words.substr(5, request.words.size() - 6);
                peer.answer(request, {"data " + axis, "ready"});
                peer.line("0000\tevent \"between\"");
            }
        } catch (const std::runtime_error&) {
        }
    });
    std::vector<std::future<int>> threads;
    for (int t = 0; t < 4; ++t) {
        threads.push_back(std::async(std::launch::async, [this, t] {
            int wrong = 0;
            for (int i = 0; i < 200; ++i) {
                const int expected = t * 1000 + i;
                double value = -1.0;
                if (!client->Get(std::to_string(expected).c_str(), &value) || value != expected) ++wrong;
            }
            return wrong;
        }));
    }
    for (auto& thread : threads) EXPECT_EQ(thread.get(), 0);
    EXPECT_TRUE(record.wait_for(800));
    finish();
}

TEST_P(Assumptions, AnswersThatNobodyWaitsForAreLoggedAndLeftOut) {
    play([](Peer& peer) {
        peer.hello();
        peer.line("4711\tready");
        peer.line("4711\taccepted");
        peer.line("4711\tdata 1");
        peer.line("4711\tpoint 1 2");
        peer.line("4711\tsomething new");
        const Request request = peer.expect("init", {"accepted", "accepted", "ready", "ready", "accepted"});
        peer.expect("get \"x\"", {"accepted", "data 1", "ready", "ready"});
        peer.wait_for_close();
    });
    long tid = 0;
    double value = 0.0;
    EXPECT_TRUE(client->Init(&tid));
    EXPECT_TRUE(client->Get("x", &value));
    EXPECT_EQ(value, 1.0);
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"complete " + std::to_string(tid)});
    EXPECT_TRUE(client->HasConnection());
    finish();
}

TEST_P(Assumptions, ACompletionBeforeItsAcceptanceCountsAsBoth) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("init", {"ready", "accepted"});
        peer.expect("master", {"ready"});
        peer.wait_for_close();
    });
    long tid = 0;
    EXPECT_TRUE(client->Init(&tid));
    EXPECT_GT(tid, 0);
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(record.all(), Texts{"complete " + std::to_string(tid)});
    finish();
}

TEST_P(Assumptions, MessagesThatComeLateAreToldWithTheirId) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        peer.line("0005\terror \"aborted\"");
        peer.line("0006\twarning \"hot\"");
        peer.line("0000\terror \"of \"nobody\"\"");
        peer.wait_for_close();
    });
    EXPECT_TRUE(client->Master());
    ASSERT_TRUE(record.wait_for(3));
    EXPECT_EQ(record.all(), (Texts{"error 5 aborted", "warning 6 hot", "error 0 of \"nobody\""}));
    finish();
}

TEST_P(Assumptions, AnAnswerThatNeverComesEndsTheCallAndIsDroppedLater) {
    options().answer = milliseconds(400);
    Gate late;
    play([&](Peer& peer) {
        peer.hello();
        const Request get = peer.expect("get \"x\"");
        const Request init = peer.expect("init");
        late.wait();
        peer.answer(get, {"data 1", "error \"e\"", "ready"});
        peer.answer(init, {"accepted", "point 1 2", "ready"});
        peer.expect("master", {"ready"});
        peer.wait_for_close();
    });
    double value = 0.0;
    long tid = 0;
    EXPECT_FALSE(client->Get("x", &value));
    EXPECT_FALSE(client->Init(&tid));
    EXPECT_EQ(tid, 0);
    ASSERT_EQ(record.all().size(), 2U);
    EXPECT_EQ(record.all()[0], "error 0 the server doesn't answer");
    late.open();
    EXPECT_TRUE(client->Master());
    EXPECT_EQ(record.all().size(), 2U);
    EXPECT_TRUE(client->HasConnection());
    finish();
}

TEST_P(Assumptions, OpenRequestsAreBounded) {
    options().open_requests = 3;
    play([](Peer& peer) {
        peer.hello();
        for (int i = 0; i < 3; ++i) peer.expect("init", {"accepted"});
        peer.wait_for_close();
    });
    long tid = 0;
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(client->Init(&tid));
    client->ThrowExceptions(true);
    EXPECT_EQ(test::thrown([&] { client->Init(&tid); }), "too many open requests");
    EXPECT_EQ(tid, 0);
    finish();
}

TEST_P(Assumptions, AnAnswerOfAnySizeKeepsTheMemoryBounded) {
    options().answer_bytes = 1000;
    play([](Peer& peer) {
        peer.hello();
        std::vector<std::string> lines(200, "data \"some axis\"");
        lines.emplace_back("ready");
        peer.expect("init list", lines);
        peer.expect("master", {"ready"});
        peer.wait_for_close();
    });
    Texts axes;
    EXPECT_FALSE(client->InitList(axes));
    EXPECT_EQ(record.all(), Texts{"error 0 the answer is too long"});
    EXPECT_TRUE(client->Master());
    finish();
}

TEST_P(Assumptions, WatchedValuesComeUntilTheWatchEnds) {
    play([](Peer& peer) {
        peer.hello();
        const Request first = peer.expect("watch 100 50 \"x\" \"y\"", {"ready", "watch 1 2", "watch 3 4"});
        const Request second = peer.expect("watch 100 50 \"z\"", {"ready", "watch 5"});
        peer.answer(first, {"watch 9 9"});
        peer.answer(second, {"watch x", "watch 6"});
        peer.expect("watch 100 50 \"w\"", {"error \"unknown axis\"", "ready"});
        peer.answer(second, {"watch 7"});
        peer.expect("watch 0 0", {"ready"});
        peer.answer(second, {"watch 8"});
        peer.line("0000\tevent \"last\"");
        peer.wait_for_close();
    });
    Texts axes = {"x", "y"};
    EXPECT_TRUE(client->WatchAxisRT(100, 50, axes));
    ASSERT_TRUE(record.wait_for(2));
    axes = {"z"};
    EXPECT_TRUE(client->WatchAxisRT(100, 50, axes));
    ASSERT_TRUE(record.wait_for(4));
    axes = {"w"};
    EXPECT_FALSE(client->WatchAxisRT(100, 50, axes));
    ASSERT_TRUE(record.wait_for(6));
    EXPECT_TRUE(client->WatchAxisRT(0, 0, 0, nullptr));
    ASSERT_TRUE(record.wait_for(7));
    EXPECT_EQ(record.all(), (Texts{"watch 1 2", "watch 3 4", "watch 5", "watch 6", "error 0 unknown axis",
                                   "watch 7", "event last"}));
    finish();
}

INSTANTIATE_TEST_SUITE_P(Transports, Assumptions, testing::ValuesIn(test::all_transports()), test::road_name);

}  // namespace
