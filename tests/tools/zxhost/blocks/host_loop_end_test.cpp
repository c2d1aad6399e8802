// Commands with results at their end, and those that must not be deleted before it.
#include <gtest/gtest.h>

#include "exit_status.h"
#include "fake_machine.h"
#include "host_loop.h"
#include "notifier.h"
#include "open_machine.h"

namespace {

using namespace zxhost;

class Deaf : public LoopListener {
public:
    void on_line(const ChannelLine&) override {}
};

class HostLoopEndTest : public ::testing::Test {
protected:
    HostLoop::Job job() {
        return {.make = [this](MOutputChannel* out) { return new FakeCommand(out, story); },
                .finish =
                    [this](MMachCommand&) {
                        ++finished;
                        deleted_before = story.deleted;
                    }};
    }
    void lose_machine_at(int poll) {
        machine.on_poll = [poll, count = 0](MOutputChannel& out) mutable {
            if (++count == poll) out.set_fatal();
        };
    }

    QuietChannel channel{0};
    HostNotifier notifier;
    FakeMachine machine{channel, notifier};
    Deaf listener;
    HostLoop loop{machine, channel, notifier, listener};
    FakeCommand::Story story;
    int finished = 0;
    int deleted_before = 0;
};

TEST_F(HostLoopEndTest, ResultsAreFetchedOnceAtTheEnd) {
    story.on_poll = [this](int, MOutputChannel&) { EXPECT_EQ(finished, 0); };
    EXPECT_TRUE(loop.run(job()).good());
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(deleted_before, 0);
    EXPECT_EQ(story.deleted, 1);
}

TEST_F(HostLoopEndTest, WhatFetchingThrowsComesOut) {
    HostLoop::Job bad = job();
    bad.finish = [](MMachCommand&) { throw HostError(ExitStatus::WrongUsage, "bad"); };
    EXPECT_THROW(loop.run(bad), HostError);
    EXPECT_EQ(story.deleted, 1);
}

TEST_F(HostLoopEndTest, ACommandThatTheDriverMaySpeakToOutlivesTheMachine) {
    lose_machine_at(2);
    story.polls = 100;
    // The kept one lasts to the program's end, longer than this test's own.
    static FakeCommand::Story kept;
    kept.polls = 100;
    HostLoop::Job lost = job();
    lost.make = [](MOutputChannel* out) { return new FakeCommand(out, kept); };
    EXPECT_THROW(loop.run(lost), HostError);
    EXPECT_EQ(finished, 0);
    EXPECT_EQ(kept.deleted, 0);
}

TEST_F(HostLoopEndTest, ACommandThatNeedsNoMachineComesToItsEndAllTheSame) {
    lose_machine_at(2);
    story.polls = 10;
    HostLoop::Job alone = job();
    alone.needs_machine = false;
    EXPECT_THROW(loop.run(alone), HostError);
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(story.deleted, 1);
}

}  // namespace
