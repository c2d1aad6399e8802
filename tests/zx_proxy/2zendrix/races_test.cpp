// The host's thread and the client's thread in the driver at the same time. What is asserted is that nothing
// is lost and nothing hangs; the thread sanitizer looks at the rest.
#include <chrono>
#include <future>
#include <thread>

#include "driver_fixture.h"
#include "gate.h"

namespace {

class RacesTest : public DriverTest {
protected:
    static constexpr int rounds = 300;
    static constexpr std::chrono::seconds bound{30};

    // Plays the client's thread while the test goes on as the host's.
    template <class Action>
    std::thread client_thread(Action action) {
        return std::thread([this, action] {
            for (int i = 0; i < rounds; ++i) action(i);
            m_finished = true;
        });
    }

    template <class Action>
    void host_until_finished(std::thread& thread, Action action) {
        do action();
        while (!m_finished);
        thread.join();
        action();
    }

    std::atomic<bool> m_lost{false};

private:
    std::atomic<bool> m_finished{false};
};

TEST_F(RacesTest, NoMessageIsLostAndEachKindKeepsItsOrder) {
    open();
    std::thread client = client_thread([this](int i) {
        script.fire_async("e" + std::to_string(i));
        script.fire_warning(0, "w" + std::to_string(i));
        script.fire_error(0, "f" + std::to_string(i));
    });
    std::string text;
    host_until_finished(client, [&] {
        driver->PollAsyncErrors();
        text += take_channel();
    });
    for (const char* kind : {"event \"e", "warning \"w", "error \"f"}) {
        std::size_t position = 0;
        for (int i = 0; i < rounds; ++i) {
            position = text.find(kind + std::to_string(i) + "\"", position);
            ASSERT_NE(position, std::string::npos) << kind << i;
        }
    }
    EXPECT_EQ(notifier.count, 3 * rounds);
}

TEST_F(RacesTest, EveryCompletionIsFoundOnce) {
    driver->m_cachedAxes.add("x");
    answers.values["x"] = 1.0;
    open();
    std::thread client = client_thread([this](int i) { script.fire_complete(i + 1); });
    int next = 1;
    host_until_finished(client, [&] {
        while (driver->take_finished_id(next)) ++next;
    });
    EXPECT_EQ(next, rounds + 1);
    EXPECT_TRUE(driver->finished_ids().empty());
}

TEST_F(RacesTest, TheHostReadsThePictureWhileItIsRenewed) {
    answers.command_words = {"move", "init list", "spin list", "keypad list"};
    answers.keypad_list = {"x"};
    answers.spin_list = answers.spin_active = {"s"};
    answers.spin_values = {1.0};
    driver->m_cachedAxes.add("x");
    for (const char* name : {"x", "y"}) {
        CAxis axis;
        axis.name = name;
        axis.kind = 1;
        axis.number4 = axis.number5 = 1.0;
        answers.capabilities[name] = axis;
    }
    open();
    std::thread client = client_thread([this](int i) {
        // Axes come, the ones that are there stay the same; the machine's values move all the time.
        answers.capabilities["n" + std::to_string(i)].name = "n" + std::to_string(i);
        answers.values["x"] = i;
        script.fire_async(i % 3 == 0 ? "keypad: changed" : "capabilities changed");
        script.take_calls();
    });
    double last = -1.0;
    host_until_finished(client, [&] {
        const double value = driver->GetAxisValue("x");
        EXPECT_GE(value, last);
        last = value;
        std::size_t known = 0;
        for (auto* info = driver->GetFirstAxisInfo(); info; info = driver->GetNextAxisInfo()) {
            known += info->name.size() + info->flags;
        }
        EXPECT_GT(known, 0U);
        EXPECT_EQ(driver->GetAxisInfo("x")->flags, 72U);
        EXPECT_TRUE(driver->IsCommandEnabled("MMachMoveCommand"));
        EXPECT_TRUE(driver->HasKeypad() && driver->HasSpin() && driver->HasInitList());
    });
    EXPECT_EQ(driver->GetAxisValue("x"), rounds - 1);
}

TEST_F(RacesTest, TheIgnoreBracketMeetsErrors) {
    open();
    std::thread client = client_thread([this](int) { script.fire_error(0, "probesystem not loaded"); });
    host_until_finished(client, [&] {
        driver->begin_ignore_not_loaded_error();
        driver->end_ignore_not_loaded_error();
        driver->PollAsyncErrors();
        take_channel();
    });
    EXPECT_TRUE(driver->errors().empty());
}

TEST_F(RacesTest, AnExpectedLossMeetsCallbacks) {
    driver->m_cachedAxes.add("x");
    open();
    driver->m_expectConnectionLoss = true;
    std::thread client = client_thread([this](int i) {
        script.fire_complete(0);
        if (i == rounds / 2) m_lost = true;
    });
    host_until_finished(client, [&] {
        if (m_lost.exchange(false)) script.answer_false("HasConnection");
        driver->PollAsyncErrors();
    });
    EXPECT_EQ(driver->client(), nullptr);
    driver->Close();
}

// The second of two overlapping refreshes must not wait for the first.
TEST_F(RacesTest, OverlappingRefreshesDoNotWait) {
    driver->m_cachedAxes.add("x");
    open();
    Gate entered;
    Gate leave;
    script.on_call("Get", [&] {
        entered.open();
        leave.wait();
    });
    std::thread first([&] { script.fire_complete(1); });
    EXPECT_TRUE(entered.wait(bound));
    auto second = std::async(std::launch::async, [&] { script.fire_complete(2); });
    EXPECT_EQ(second.wait_for(bound), std::future_status::ready);
    EXPECT_EQ(driver->finished_ids(), std::set<long>{2}) << "the first is still in its query";
    EXPECT_EQ(script.calls_of("Get").size(), 1U);
    leave.open();
    first.join();
    EXPECT_EQ(driver->finished_ids(), (std::set<long>{1, 2}));
}

// A reader of the init list waits for the machine's answer; the flags and axes don't.
TEST_F(RacesTest, ARefreshOfTheInitListHoldsUpNothingElse) {
    answers.command_words = {"init list"};
    open();
    Gate entered;
    Gate leave;
    script.on_call("InitList", [&] {
        entered.open();
        leave.wait();
    });
    std::thread client([&] { script.fire_async("capabilities changed"); });
    EXPECT_TRUE(entered.wait(bound));
    EXPECT_TRUE(driver->HasInitList());
    EXPECT_EQ(driver->GetAxisInfo("x"), nullptr);
    driver->PollAsyncErrors();
    leave.open();
    client.join();
    EXPECT_EQ(driver->events(), Lines{"capabilities changed"});
}

}  // namespace
