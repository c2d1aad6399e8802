// The machinery that all commands share, seen on one of them: callbacks, queues, harvest and abort.
#include <thread>

#include "command_fixture.h"

namespace {

class CommandFrameworkTest : public CommandTest {
protected:
    // Calls of a move from its creation to its last one in the constructor.
    static Texts life_of_a_move() {
        return {"GetAsyncCallback()",
                "GetErrorMsgCallback()",
                "GetWarningMsgCallback()",
                "SetErrorMsgCallback(f5, u2)",
                "SetWarningMsgCallback(f6, u2)",
                "SetAsyncCallback(f7, u2)",
                "GetMachine(0)",
                "Move(1, x=1.5 flag -1)",
                "ReleaseMachine(0)"};
    }
    static Texts callbacks_given_back() {
        return {"SetWarningMsgCallback(warnings, driver)", "SetErrorMsgCallback(errors, driver)",
                "SetAsyncCallback(events, driver)"};
    }
};

TEST_F(CommandFrameworkTest, AMoveFromCreationToDeletion) {
    create_move();
    EXPECT_EQ(calls(), life_of_a_move());
    EXPECT_FALSE(m_command->IsDone());
    EXPECT_EQ(calls(), Texts());

    script().fire_complete(script().last_id());
    EXPECT_EQ(m_notifier.m_count, 1);
    EXPECT_EQ(m_driver->finished(), 1u);
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(m_driver->finished(), 0u);
    EXPECT_EQ(calls(), callbacks_given_back());
}

TEST_F(CommandFrameworkTest, TheUserPointerIsThePartWhoseCallbackItIs) {
    M2ZendrixCommand* part = dynamic_cast<M2ZendrixCommand*>(create_move());
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(script().slots().error.second, part);
    EXPECT_EQ(script().slots().warning.second, part);
    EXPECT_EQ(script().slots().async.second, part);
}

TEST_F(CommandFrameworkTest, DeletingADoneCommandGivesTheSameCallbacksBackOnceMore) {
    create_move();
    script().fire_complete(script().last_id());
    EXPECT_TRUE(m_command->IsDone());
    calls();
    m_command.reset();
    EXPECT_EQ(calls(), callbacks_given_back());
}

TEST_F(CommandFrameworkTest, DeletingARunningCommandLeavesItsIdForGood) {
    create_move();
    script().fire_error(script().last_id(), "late news");
    calls();
    m_command.reset();
    EXPECT_EQ(calls(), callbacks_given_back());
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"late news\""});
    script().fire_complete(script().last_id());
    EXPECT_EQ(m_driver->finished(), 1u);
}

TEST_F(CommandFrameworkTest, AnotherCommandsCompletionDoesNotEndIt) {
    create_move();
    script().fire_complete(script().last_id() + 1);
    EXPECT_FALSE(m_command->IsDone());
    script().fire_complete(script().last_id());
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(m_driver->finished(), 1u);
}

TEST_F(CommandFrameworkTest, ACompletionInsideTheCallIsNotMissed) {
    script().on_call("Move", [] { script().fire_complete(script().last_id()); });
    create_move();
    EXPECT_TRUE(m_command->IsDone());
}

TEST_F(CommandFrameworkTest, ThrowingAfterTheIdWasWrittenWaitsForTheCompletion) {
    script().answers.id_on_failure = 55;
    script().throw_error("Move", "too late");
    create_move();
    m_log = {"m_pZendrixCom->Move() failed: 'too late'\n"};
    EXPECT_FALSE(m_command->IsDone());
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"too late\""});
    script().fire_complete(55);
    EXPECT_TRUE(m_command->IsDone());
}

TEST_F(CommandFrameworkTest, MessagesReachTheChannelAtThePollErrorsFirst) {
    create_move();
    script().fire_async("movement: begin");
    script().fire_warning(3, "operation with no effect");
    script().fire_error(4, "argument out of range");
    EXPECT_EQ(channel_lines(), Texts());
    EXPECT_EQ(m_notifier.m_count, 0);
    EXPECT_FALSE(m_command->IsDone());
    EXPECT_EQ(channel_lines(),
              (Texts{"0007\terror \"argument out of range\"", "0007\twarning \"operation with no effect\"",
                     "0000\tevent \"movement: begin\""}));
}

TEST_F(CommandFrameworkTest, PollingAfterTheEndGoesOnHarvesting) {
    create_move();
    void (*late)(void*, long, const char*) = script().slots().error.first;
    void* user = script().slots().error.second;
    script().fire_complete(script().last_id());
    EXPECT_TRUE(m_command->IsDone());
    late(user, 1, "on its way already");
    calls();
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(calls(), Texts());
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"on its way already\""});
}

TEST_F(CommandFrameworkTest, EqualErrorsOfOneHarvestAreBothReportedButNotAgainLater) {
    create_move();
    script().fire_error(1, "wrong state");
    script().fire_error(1, "wrong state");
    m_command->IsDone();
    script().fire_error(1, "wrong state");
    script().fire_error(1, "state");
    m_command->IsDone();
    EXPECT_EQ(channel_lines(), (Texts{"0007\terror \"wrong state\"", "0007\terror \"wrong state\""}));
}

TEST_F(CommandFrameworkTest, WarningsAreComparedTooAndEventsAreNot) {
    create_move();
    for (int round = 0; round < 2; ++round) {
        script().fire_warning(1, "ambiguous tip, using first");
        script().fire_async("door open");
        m_command->IsDone();
    }
    EXPECT_EQ(channel_lines(), (Texts{"0007\twarning \"ambiguous tip, using first\"",
                                      "0000\tevent \"door open\"", "0000\tevent \"door open\""}));
}

TEST_F(CommandFrameworkTest, AWarningThatAPendingEventHoldsIsADuplicate) {
    create_move();
    m_channel.event("machine changed");
    script().fire_warning(1, "machine changed");
    m_command->IsDone();
    EXPECT_EQ(channel_lines(), Texts{"0000\tevent \"machine changed\""});
}

TEST_F(CommandFrameworkTest, AnAbortedErrorLeavesNoTraceButALongerTextDoes) {
    create_move();
    script().fire_error(1, "aborted");
    script().fire_error(0, "aborted");
    script().fire_error(1, "aborted by the door");
    m_command->IsDone();
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"aborted by the door\""});
    EXPECT_EQ(m_notifier.m_count, 0);
}

TEST_F(CommandFrameworkTest, AnAbortedWarningIsQueued) {
    create_move();
    script().fire_warning(1, "aborted");
    m_command->IsDone();
    EXPECT_EQ(channel_lines(), Texts{"0007\twarning \"aborted\""});
}

TEST_F(CommandFrameworkTest, MessagesWithoutAnIdGoToTheSavedCallbacks) {
    create_move();
    script().fire_error(0, "no transaction");
    script().fire_warning(0, "nobody's");
    EXPECT_EQ(m_notifier.m_count, 2);
    m_command->IsDone();
    EXPECT_EQ(channel_lines(), Texts());
    m_driver->PollAsyncErrors();
    std::string text;
    m_driverChannel.take_text(text, true);
    EXPECT_EQ(text, "0000\terror \"no transaction\"\r\n0000\twarning \"nobody's\"\r\n");
}

TEST_F(CommandFrameworkTest, AnEventRenewsTheDriversPictureBeforeItIsQueued) {
    create_move();
    bool asked = false;
    script().on_call("CommandSet", [&] {
        asked = true;
        m_command->IsDone();
        EXPECT_EQ(channel_lines(), Texts());
    });
    script().fire_async("capabilities changed");
    EXPECT_TRUE(asked);
    EXPECT_EQ(m_notifier.m_count, 0);
    m_command->IsDone();
    EXPECT_EQ(channel_lines(), Texts{"0000\tevent \"capabilities changed\""});
}

TEST_F(CommandFrameworkTest, NestedCommandsUnwindTheCallbacks) {
    create_move();
    const long outer_id = script().last_id();
    std::unique_ptr<MMachCommand> outer = std::move(m_command);
    const auto outer_slot = script().slots().error;
    create_move();
    script().fire_error(outer_id, "the newest gets it");
    script().fire_error(0, "nobody's");  // through both to the driver
    script().fire_complete(script().last_id());
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"the newest gets it\""});
    EXPECT_EQ(script().slots().error, outer_slot);
    m_command.reset();
    script().fire_complete(outer_id);
    EXPECT_TRUE(outer->IsDone());
    EXPECT_TRUE(m_driver->driver_callbacks_installed());
    m_driver->PollAsyncErrors();
    std::string text;
    m_driverChannel.take_text(text, true);
    EXPECT_EQ(text, "0000\terror \"nobody's\"\r\n");
}

TEST_F(CommandFrameworkTest, TheEchoOfAFailedCallIsReportedOnce) {
    script().on_call("Move", [] { script().fire_error(script().last_id(), "argument out of range"); });
    script().throw_error("Move", "argument out of range");
    create_move();
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"argument out of range\""});
    m_log = {"m_pZendrixCom->Move() failed: 'argument out of range'\n"};
}

TEST_F(CommandFrameworkTest, ARefusedReleaseIsOfNoAccount) {
    script().answer_false("ReleaseMachine");
    create_move();
    EXPECT_FALSE(m_command->IsDone());
}

TEST_F(CommandFrameworkTest, AThrowingReleaseIsReportedAndTheCommandRunsOn) {
    script().throw_error("ReleaseMachine", "gone");
    create_move();
    EXPECT_FALSE(m_command->IsDone());
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"gone\""});
    m_log = {"ZX_LockMachine() GetMachine()failed: 'gone'\n"};
    script().fire_complete(script().last_id());
    EXPECT_TRUE(m_command->IsDone());
}

TEST_F(CommandFrameworkTest, AForeignExceptionOfTheReleasePassesAndGivesTheCallbacksBack) {
    script().throw_foreign("ReleaseMachine");
    EXPECT_THROW(create_move(), scripted::Foreign);
    EXPECT_TRUE(m_driver->driver_callbacks_installed());
}

TEST_F(CommandFrameworkTest, TextsArriveOnAnotherThreadWhileTheHostPolls) {
    create_move();
    constexpr int count = 2000;
    std::thread client([] {
        for (int i = 0; i < count; ++i) {
            const std::string text = "<" + std::to_string(i) + ">";
            script().fire_error(1, "e" + text);
            script().fire_warning(1, "w" + text);
            script().fire_async("v" + text);
        }
        script().fire_complete(script().last_id());
    });
    std::size_t lines = 0;
    while (!m_command->IsDone()) lines += channel_lines().size();
    client.join();
    m_command->IsDone();
    lines += channel_lines().size();
    EXPECT_EQ(lines, 3u * count);
}

TEST(StripMessageTest, TakesKeywordAndQuotesOff) {
    const auto strip = M2ZendrixCommand::strip_message;
    EXPECT_EQ(strip("error \"internal error\""), "internal error");
    EXPECT_EQ(strip("warning \"w\""), "w");
    EXPECT_EQ(strip("event \"e\""), "e");
    EXPECT_EQ(strip("data 1 2"), "1 2");
    EXPECT_EQ(strip("no prefix"), "no prefix");
    EXPECT_EQ(strip("\"x\""), "x");
    EXPECT_EQ(strip(""), "");
    EXPECT_EQ(strip("\""), "");
    EXPECT_EQ(strip("\"\""), "");
    EXPECT_EQ(strip("error "), "");
    EXPECT_EQ(strip("error"), "error");
    EXPECT_EQ(strip("error error \"x\""), "error \"x");
    EXPECT_EQ(strip("an error \"x\""), "an error \"x");
    EXPECT_EQ(strip("\"\"x\"\""), "\"x\"");
}

// What only a command's own code can ask.
class Probe : public M2ZendrixCommand {
public:
    using M2ZendrixCommand::is_already_reported;
    using M2ZendrixCommand::M2ZendrixCommand;
};

TEST_F(CommandFrameworkTest, AlreadyReportedIsASubstringOfAnyLine) {
    Probe probe(m_driver.get(), &m_channel);
    EXPECT_FALSE(probe.is_already_reported(""));
    m_channel.error("probe: no contact");
    EXPECT_TRUE(probe.is_already_reported("no contact"));
    EXPECT_TRUE(probe.is_already_reported("0007\terror"));
    EXPECT_TRUE(probe.is_already_reported(""));
    EXPECT_FALSE(probe.is_already_reported("No contact"));
    EXPECT_FALSE(probe.is_already_reported("no contact\"\r\n"));
    const Texts lines{"first", "second"};
    EXPECT_TRUE(probe.is_already_reported("eco", &lines));
    EXPECT_FALSE(probe.is_already_reported("no contact", &lines));
    channel_lines();
}

TEST_F(CommandFrameworkTest, AFactoryWithoutAClientGivesNothing) {
    m_driver->Close();
    calls();
    EXPECT_EQ(create_move(), nullptr);
    EXPECT_EQ(calls(), Texts());
}

}  // namespace
