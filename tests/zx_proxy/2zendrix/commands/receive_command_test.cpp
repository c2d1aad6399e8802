// Receiving a block: what becomes of the reply lines, and which completions are whose.
#include <limits>
#include <stdexcept>
#include <thread>

#include "command_fixture.h"

namespace {

class ReceiveCommandTest : public CommandTest {
protected:
    // The next transaction's receiver holds these lines.
    static void lay_out(const Texts& lines) {
        script().answers.reply_lines[script().answers.next_id] = lines;
    }
    MMachReceiveCommand* create_receive(const std::string& name = "block") {
        auto* command = create(&MMachAbstract::NewMMachReceiveCommand, name);
        calls();
        return command;
    }
    static void complete() { script().fire_complete(script().last_id()); }

    // A whole reply, from the request to the end.
    MMachReceiveCommand* receive(const Texts& lines) {
        lay_out(lines);
        auto* command = create_receive();
        EXPECT_FALSE(command->IsDone());
        complete();
        EXPECT_TRUE(command->IsDone());
        return command;
    }
    void expect_refused(const Texts& lines) {
        lay_out(lines);
        auto* command = create_receive();
        EXPECT_THROW(complete(), std::out_of_range);
        EXPECT_EQ(m_driver->finished(), 0u);
        EXPECT_FALSE(command->IsDone());
    }

    static constexpr const char* given_back = "SetCommandCompleteCallback(complete, driver)";
};

TEST_F(ReceiveCommandTest, LinesAreJoinedWithNothingBetweenThem) {
    EXPECT_EQ(receive({"\"one \"", "\"two\"", "\"\"", "\" three\""})->m_data, "one two three");
}

TEST_F(ReceiveCommandTest, AReplyWithoutLinesIsAnEmptyBlock) {
    EXPECT_EQ(receive({})->m_data, "");
    EXPECT_EQ(m_driver->finished(), 0u);
}

TEST_F(ReceiveCommandTest, Base64IsDecodedFromTheJoinedLines) {
    EXPECT_EQ(receive({"base64 \"QUJD\"", "\"REVG\""})->m_data, "ABCDEF");
    EXPECT_EQ(receive({"base64 \"QU\"", "\"JDR\"", "\"EVG\""})->m_data, "ABCDEF");
    EXPECT_EQ(receive({"base64 \"\"", "\"AA==\""})->m_data, std::string(1, '\0'));
    EXPECT_EQ(receive({"base64 \"\""})->m_data, "");
}

TEST_F(ReceiveCommandTest, NothingIsDecodedBeforeTheHostAsks) {
    lay_out({"base64 \"QUJD\""});
    auto* command = create_receive();
    complete();
    EXPECT_EQ(command->m_data, "QUJD");
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, "ABC");
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, "ABC");
}

TEST_F(ReceiveCommandTest, OnlyTheFirstSixLettersOfTheFirstLineTell) {
    EXPECT_EQ(receive({"base64..QUJD."})->m_data, "ABC");
    EXPECT_EQ(receive({"\"base64 \"", "base64 \"QUJD\""})->m_data, "base64 ase64 \"QUJD");
    EXPECT_EQ(receive({"Base64 \"QUJD\""})->m_data, "ase64 \"QUJD");
}

TEST_F(ReceiveCommandTest, WithoutQuotesTheFirstAndTheLastByteAreLost) {
    EXPECT_EQ(receive({"QUJD", "REVG"})->m_data, "UJEV");
    EXPECT_EQ(receive({"ab"})->m_data, "");
}

TEST_F(ReceiveCommandTest, ALineOfItsOpeningAloneIsEmpty) {
    EXPECT_EQ(receive({"\""})->m_data, "");
    EXPECT_EQ(receive({"base64 \""})->m_data, "");
}

TEST_F(ReceiveCommandTest, AFirstLineThatIsTooShortLeavesTheCallback) {
    expect_refused({"base64"});
    expect_refused({"base64 ", "\"REVG\""});
    expect_refused({"", "\"REVG\""});
}

TEST_F(ReceiveCommandTest, AFurtherLineThatIsTooShortLeavesTheCallback) { expect_refused({"\"ab\"", ""}); }

TEST_F(ReceiveCommandTest, WrongBase64IsReportedOnce) {
    EXPECT_EQ(receive({"base64 \"Q*JD\""})->m_data, "");
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"base64 decode failed\""});
    const Texts trace = recording::error_trace();
    ASSERT_FALSE(trace.empty());
    EXPECT_EQ(trace.back(), "M2ZendrixReceiveCommand::IsDone(): stl_decode_base64() failed");
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(recording::error_trace(), trace);
}

TEST_F(ReceiveCommandTest, WrongBase64IsNotReportedTwiceOnOneChannel) {
    m_channel.error("base64 decode failed");
    receive({"base64 \"QUJ\""});
    EXPECT_EQ(channel_lines().size(), 1u);
}

TEST_F(ReceiveCommandTest, TheCompletionMayComeBeforeReceiveReturns) {
    lay_out({"\"quick\""});
    script().on_call("Receive", [] { complete(); });
    auto* command = create_receive();
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, "quick");
}

TEST_F(ReceiveCommandTest, CompletionsOfOthersGoToTheDriver) {
    lay_out({"\"mine\""});
    auto* command = create_receive();
    script().answers.reply_lines[815] = {"\"theirs\""};
    script().fire_complete(815);
    EXPECT_EQ(m_driver->finished(), 1u);
    EXPECT_EQ(m_notifier.m_count, 1);
    EXPECT_EQ(command->m_data, "");
    EXPECT_FALSE(command->IsDone());
    script().fire_complete(0);
    EXPECT_EQ(m_driver->finished(), 1u);
    EXPECT_EQ(m_notifier.m_count, 2);
    complete();
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, "mine");
    EXPECT_TRUE(m_driver->take_finished_id(815));
}

TEST_F(ReceiveCommandTest, ACommandInsideThisOneFindsItsEnd) {
    lay_out({"\"outer\""});
    auto* outer = create_receive();
    const long id = script().last_id();
    {
        MOutputChannel channel(8);
        const std::unique_ptr<MMachCommand> inner(m_driver->NewMMachMovehomeCommand(&channel));
        EXPECT_FALSE(inner->IsDone());
        complete();
        EXPECT_TRUE(inner->IsDone());
    }
    script().fire_complete(id);
    EXPECT_TRUE(outer->IsDone());
    EXPECT_EQ(outer->m_data, "outer");
}

TEST_F(ReceiveCommandTest, ACompletionWithoutAReceiverIsNeverToldToTheDriver) {
    auto* command = create_receive();
    complete();
    m_log = {
        "M2ZendrixReceiveCommand::ReceiveCompleteCallback(): no receiver for 1, but we received a ready for "
        "it"};
    EXPECT_EQ(recording::error_log(), m_log);
    EXPECT_EQ(m_driver->finished(), 0u);
    EXPECT_EQ(m_notifier.m_count, 0);
    EXPECT_FALSE(command->IsDone());
    EXPECT_FALSE(command->IsDone());
}

TEST_F(ReceiveCommandTest, ARefusedTransferLooksForItsReceiverUnderZero) {
    script().answer_false("Receive");
    auto* command = create_receive();
    script().fire_complete(0);
    m_log = {
        "M2ZendrixReceiveCommand::ReceiveCompleteCallback(): no receiver for 0, but we received a ready for "
        "it"};
    EXPECT_EQ(m_notifier.m_count, 0);
    script().answers.reply_lines[0] = {"\"zero\""};
    script().fire_complete(0);
    EXPECT_EQ(m_notifier.m_count, 1);
    EXPECT_EQ(m_driver->finished(), 0u);
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, "zero");
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"error \"internal error\"\""});
}

TEST_F(ReceiveCommandTest, EveryPollAfterTheEndGivesTheDriverItsCompletionsBack) {
    receive({"\"a\""});
    EXPECT_EQ(calls().back(), given_back);
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(calls(), Texts{given_back});
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(calls(), Texts{given_back});
}

TEST_F(ReceiveCommandTest, TheDestructorLeavesTheCompletionsAsTheyAre) {
    lay_out({});
    create_receive();
    m_command.reset();
    for (const std::string& call : calls())
        EXPECT_EQ(call.find("SetCommandCompleteCallback"), std::string::npos);
}

TEST_F(ReceiveCommandTest, MemoryForTheLinesIsReservedButNotWithoutBound) {
    script().answers.per_line_size = 1000;
    EXPECT_GE(receive({"\"a\"", "\"b\"", "\"c\""})->m_data.capacity(), 3000u);
    for (const std::size_t size : {std::size_t{0}, std::numeric_limits<std::size_t>::max()}) {
        script().answers.per_line_size = size;
        EXPECT_EQ(receive({"\"a\"", "\"b\"", "\"c\""})->m_data, "abc");
    }
    // The machine said one long line once: ten million short ones don't need as much each.
    script().answers.per_line_size = std::size_t{1} << 40;
    EXPECT_LE(receive(Texts(100, "\"x\""))->m_data.capacity(), std::size_t{1} << 29);
}

TEST_F(ReceiveCommandTest, NeitherATransferNorItsEndIsStopped) {
    lay_out({"\"a\""});
    auto* command = create_receive();
    command->Abort();
    EXPECT_EQ(script().calls_of("Abort"), Texts());
    complete();
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, "a");
}

TEST_F(ReceiveCommandTest, NamesLikeTheReservedOneAreOfTheMachine) {
    for (const char* name : {"backup.m2zendrix_dll.zip", "backup.m2zendrix_dl", "Backup.m2zendrix_dll",
                             "x/backup.m2zendrix_dll", " backup.m2zendrix_dll", ""}) {
        create(&MMachAbstract::NewMMachReceiveCommand, std::string(name));
        EXPECT_EQ(script().calls_of("Receive").back(), "Receive(\"" + std::string(name) + "\")");
    }
    EXPECT_EQ(script().calls_of("Receive").size(), 6u);
}

TEST_F(ReceiveCommandTest, TheClientsThreadFillsWhatTheHostsThreadReads) {
    for (int round = 0; round < 100; ++round) {
        lay_out({"base64 \"QUJD\"", "\"REVG\""});
        std::thread client;
        script().on_call("Receive", [&] {
            client = std::thread([id = script().last_id()] {
                script().fire_complete(id);
                script().fire_complete(0);
            });
        });
        auto* command = create(&MMachAbstract::NewMMachReceiveCommand, std::string("block"));
        while (!command->IsDone()) std::this_thread::yield();
        EXPECT_EQ(command->m_data, "ABCDEF");
        client.join();
    }
}

}  // namespace
