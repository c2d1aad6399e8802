#include "host_loop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include "exit_status.h"
#include "fake_machine.h"
#include "notifier.h"
#include "open_machine.h"
#include "os/interrupt.h"

namespace {

using namespace zxhost;

class Listener : public LoopListener {
public:
    void on_line(const ChannelLine& line) override { lines.push_back(line.whole); }
    void on_wake() override {
        if (wake) wake();
    }
    void on_abort() override { ++aborts; }

    std::vector<std::string> lines;
    std::function<void()> wake;
    int aborts = 0;
};

class HostLoopTest : public ::testing::Test {
protected:
    HostLoop::MakeCommand fake() {
        return [this](MOutputChannel* out) { return new FakeCommand(out, story); };
    }

    ExitStatus status_of_run() {
        try {
            loop.run(fake());
        } catch (const HostError& error) {
            return error.status;
        }
        return ExitStatus::Done;
    }

    QuietChannel channel{0};
    HostNotifier notifier;
    FakeMachine machine{channel, notifier};
    Listener listener;
    HostLoop loop{machine, channel, notifier, listener};
    FakeCommand::Story story;
};

TEST_F(HostLoopTest, PollsACommandToItsEndAndDeletesIt) {
    const CommandResult result = loop.run(fake());
    EXPECT_TRUE(result.good());
    EXPECT_EQ(story.deleted, 1);
    EXPECT_EQ(story.aborts, 0);
}

TEST_F(HostLoopTest, HandsOnLinesInOrderAndKeepsEachErrorOnce) {
    story.on_poll = [](int poll, MOutputChannel& out) {
        if (poll == 1) out.error("out of range");
        if (poll == 2) out.event("movement: begin");
        if (poll == 3) out.error("out of range");
    };
    story.on_delete = [](MOutputChannel& out) { out.error("late"); };
    machine.on_poll = [first = true](MOutputChannel& out) mutable {
        if (std::exchange(first, false)) out.warning("machine: emergency");
    };
    const CommandResult result = loop.run(fake());
    EXPECT_EQ(result.errors, (std::vector<std::string>{"out of range", "late"}));
    EXPECT_EQ(listener.lines, (std::vector<std::string>{
                                  "0001\terror \"out of range\"", "0000\twarning \"machine: emergency\"",
                                  "0000\tevent \"movement: begin\"", "0001\terror \"out of range\"",
                                  "0001\terror \"late\""}));
}

TEST_F(HostLoopTest, NumbersItsTransactions) {
    story.polls = 1;
    story.on_poll = [](int, MOutputChannel& out) { out.warning("w"); };
    loop.run(fake());
    loop.run(fake());
    EXPECT_EQ(listener.lines, (std::vector<std::string>{"0001\twarning \"w\"", "0002\twarning \"w\""}));
}

TEST_F(HostLoopTest, TakesResultsEveryTurnAndAfterTheEnd) {
    int taken_at = 0;
    int poll_seen = 0;
    story.on_poll = [&](int poll, MOutputChannel&) { poll_seen = poll; };
    loop.run(fake(), [&](MMachCommand&) { taken_at = poll_seen; });
    EXPECT_EQ(taken_at, story.polls);
}

TEST_F(HostLoopTest, TakesResultsThatCameBeforeTheMachineWasLost) {
    bool lost = false;
    bool taken = false;
    story.polls = 1000000;
    machine.on_poll = [&](MOutputChannel& out) {
        lost = true;
        out.set_fatal();
    };
    EXPECT_THROW(loop.run(fake(), [&](MMachCommand&) { taken = lost; }), HostError);
    EXPECT_TRUE(taken);
}

TEST_F(HostLoopTest, AFailureToTakeResultsAbortsTheCommandAndComesOutAtItsEnd) {
    int taken = 0;
    story.polls = 1000000;
    const auto take = [&](MMachCommand&) {
        ++taken;
        throw HostError(ExitStatus::WrongUsage, "disk full");
    };
    try {
        loop.run(fake(), take);
        FAIL() << "no error";
    } catch (const HostError& error) {
        EXPECT_STREQ(error.what(), "disk full");
    }
    EXPECT_EQ(taken, 1);
    EXPECT_EQ(story.aborts, 1);
    EXPECT_EQ(story.deleted, 1);
}

TEST_F(HostLoopTest, NoCommandMeansNoMachine) {
    try {
        loop.run([](MOutputChannel*) { return nullptr; });
        FAIL() << "no command, and no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status, ExitStatus::NoConnection);
    }
}

TEST_F(HostLoopTest, ACommandThatTheDriverLacksIsAnErrorOfTheMachine) {
    const CommandResult result = loop.run([](MOutputChannel* out) -> MMachCommand* {
        out->error(15);
        return nullptr;
    });
    EXPECT_EQ(result.errors, std::vector<std::string>{"transaction: command unknown"});
}

TEST_F(HostLoopTest, ALostMachineEndsTheCommandWithItsOwnStatus) {
    story.polls = 1000000;
    machine.on_poll = [count = 0](MOutputChannel& out) mutable {
        if (++count < 3) return;
        out.set_fatal();
        out.errorf("fatal: machine connection lost");
    };
    EXPECT_EQ(status_of_run(), ExitStatus::NoConnection);
    EXPECT_EQ(story.deleted, 1);
    EXPECT_EQ(listener.lines.back(), "0000\terror \"fatal: machine connection lost\"");
}

TEST_F(HostLoopTest, CtrlCAbortsOnceAndWaitsForTheEnd) {
    story.polls = 1000000;
    listener.wake = [first = true]() mutable {
        if (std::exchange(first, false)) os::interrupt_this_process();
    };
    const CommandResult result = loop.run(fake());
    EXPECT_TRUE(result.aborted);
    EXPECT_EQ(story.aborts, 1);
    EXPECT_EQ(listener.aborts, 1);
    EXPECT_EQ(story.deleted, 1);
}

TEST_F(HostLoopTest, CtrlCAtTheVeryEndCountsToo) {
    story.polls = 1;
    listener.wake = [] { os::interrupt_this_process(); };
    EXPECT_TRUE(loop.run(fake()).aborted);
    EXPECT_EQ(story.aborts, 0);
}

TEST_F(HostLoopTest, TheNextCommandKnowsNothingOfAnOldCtrlC) {
    story.polls = 1;
    listener.wake = [first = true]() mutable {
        if (std::exchange(first, false)) os::interrupt_this_process();
    };
    loop.run(fake());
    EXPECT_TRUE(loop.run(fake()).good());
}

using HostLoopDeathTest = HostLoopTest;

TEST_F(HostLoopDeathTest, ASecondCtrlCLeavesAtOnce) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            story.polls = 1000000;
            listener.wake = [first = true]() mutable {
                if (!std::exchange(first, false)) return;
                os::interrupt_this_process();
                os::interrupt_this_process();
            };
            loop.run(fake());
        },
        ::testing::ExitedWithCode(1), "");
}

TEST_F(HostLoopDeathTest, OutsideACommandCtrlCEndsTheProgram) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            std::signal(SIGINT, SIG_DFL);
            loop.run(fake());
            os::interrupt_this_process();
        },
        "");
}

TEST(HostNotifier, ARingBeforeTheWaitIsNotLost) {
    HostNotifier notifier;
    EXPECT_EQ(notifier.HasNotification(), 0);
    EXPECT_TRUE(notifier.Notify());
    EXPECT_NE(notifier.HasNotification(), 0);
    const auto start = std::chrono::steady_clock::now();
    notifier.wait(std::chrono::seconds(60));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    EXPECT_EQ(notifier.HasNotification(), 0);
}

TEST(HostNotifier, ARingFromAnotherThreadWakes) {
    HostNotifier notifier;
    std::thread ringer([&notifier] { notifier.Notify(); });
    notifier.wait(std::chrono::seconds(60));
    ringer.join();
    EXPECT_EQ(notifier.HasNotification(), 0);
}

}  // namespace
