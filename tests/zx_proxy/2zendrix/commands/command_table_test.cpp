// Every command on all of its roads: good, false, thrown, foreign exception; the machine refused, throwing,
// throwing something foreign; abort good, false, throwing; completion.
#include "command_table.h"

#include "command_fixture.h"

namespace {

class CommandTableTest : public CommandTest, public ::testing::WithParamInterface<CommandRow> {
protected:
    const CommandRow& row() const { return GetParam(); }

    void create_row() {
        if (row().receives) script().answers.reply_lines[script().answers.next_id];
        m_command.reset(row().create(*m_driver, &m_channel));
    }

    // What a command's constructor asks of the client.
    Texts calls_of_creation() const {
        Texts texts{
            "GetAsyncCallback()",          "GetErrorMsgCallback()",         "GetWarningMsgCallback()",
            "SetErrorMsgCallback(f5, u2)", "SetWarningMsgCallback(f6, u2)", "SetAsyncCallback(f7, u2)"};
        // The scan part follows the command part in the object, at the same address.
        if (row().scans) texts.push_back("SetScanCallback(f8, u2)");
        // The callback speaks of the whole object, the others of its command part.
        if (row().receives) texts.push_back("SetCommandCompleteCallback(f8, u3)");
        if (row().takes_machine) texts.push_back("GetMachine(0)");
        texts.push_back(row().call);
        if (row().takes_machine) texts.push_back("ReleaseMachine(0)");
        return texts;
    }
    Texts calls_without_machine() const {
        Texts texts = calls_of_creation();
        texts.resize(texts.size() - 2);
        return texts;
    }
    Texts calls_of_deletion() const {
        Texts texts = callbacks_given_back();
        if (row().scans) texts.insert(texts.begin(), "SetScanCallback(null, null)");
        return texts;
    }
    static Texts callbacks_given_back() {
        return {"SetWarningMsgCallback(warnings, driver)", "SetErrorMsgCallback(errors, driver)",
                "SetAsyncCallback(events, driver)"};
    }

    static constexpr const char* completions_given_back = "SetCommandCompleteCallback(complete, driver)";

    // The command, which has no id, ends at the first poll and gives the callbacks back then.
    void expect_ended_at_the_first_poll() {
        calls();
        EXPECT_TRUE(m_command->IsDone());
        Texts expected = callbacks_given_back();
        if (row().receives) expected.push_back(completions_given_back);
        EXPECT_EQ(calls(), expected);
        EXPECT_TRUE(m_driver->driver_callbacks_installed());
    }

    static Texts error_line(const std::string& text) { return {"0007\terror \"" + text + "\""}; }
    std::string thrown_log(const std::string& text) const {
        std::string log = row().thrown_log;
        return log.replace(log.find("%s"), 2, text);
    }
    std::string reported(const std::string& text) const {
        return row().thrown == CommandRow::bare_once ? M2ZendrixCommand::strip_message(text) : text;
    }
};

TEST_P(CommandTableTest, Good) {
    create_row();
    EXPECT_EQ(calls(), calls_of_creation());
    EXPECT_EQ(m_command->GetCommandName(), std::string(row().command_name));
    EXPECT_EQ(m_command->m_pOutput, &m_channel);
    if (row().has_id) {
        EXPECT_FALSE(m_command->IsDone());
        EXPECT_EQ(calls(), Texts());
        script().fire_complete(script().last_id());
    }
    expect_ended_at_the_first_poll();
    EXPECT_EQ(m_driver->finished(), 0u);
    m_command.reset();
    EXPECT_EQ(calls(), calls_of_deletion());
}

TEST_P(CommandTableTest, False) {
    script().answer_false(row().operation());
    create_row();
    EXPECT_EQ(calls(), calls_of_creation());
    EXPECT_EQ(channel_lines(), error_line(row().false_text));
    if (!row().false_log.empty()) m_log = {row().false_log};
    expect_ended_at_the_first_poll();
}

TEST_P(CommandTableTest, FalseWithItsTextInTheChannelAlready) {
    m_channel.error(row().false_text);
    const Texts before = error_line(row().false_text);
    script().answer_false(row().operation());
    create_row();
    EXPECT_EQ(channel_lines().size(), row().false_once ? 1u : 2u);
    if (!row().false_log.empty()) m_log = {row().false_log};
}

TEST_P(CommandTableTest, Thrown) {
    const std::string text = "error \"probe not loaded\"";
    script().throw_error(row().operation(), text);
    create_row();
    EXPECT_EQ(calls(), calls_of_creation());
    EXPECT_EQ(channel_lines(), error_line(reported(text)));
    m_log = {thrown_log(text)};
    expect_ended_at_the_first_poll();
}

TEST_P(CommandTableTest, ThrownWithItsTextInTheChannelAlready) {
    m_channel.error("wrong state");
    script().throw_error(row().operation(), "wrong state");
    create_row();
    EXPECT_EQ(channel_lines().size(), row().thrown == CommandRow::always ? 2u : 1u);
    m_log = {thrown_log("wrong state")};
}

TEST_P(CommandTableTest, ForeignExceptionPassesAndLeavesNothingBehind) {
    script().throw_foreign(row().operation());
    EXPECT_THROW(create_row(), scripted::Foreign);
    Texts expected = calls_of_creation();
    if (row().receives) expected.push_back(completions_given_back);
    for (const std::string& text : calls_of_deletion()) expected.push_back(text);
    EXPECT_EQ(calls(), expected);
    EXPECT_TRUE(m_driver->driver_callbacks_installed());
    EXPECT_EQ(script().slots().scan.first, nullptr);
}

TEST_P(CommandTableTest, MachineRefused) {
    script().answer_false("GetMachine");
    create_row();
    if (!row().takes_machine) {
        EXPECT_EQ(calls(), calls_of_creation());
        return;
    }
    EXPECT_EQ(calls(), calls_without_machine());
    m_log = {"ZX_LockMachine() machine failed, can't start the command"};
    expect_ended_at_the_first_poll();
    EXPECT_EQ(channel_lines(), Texts());
}

TEST_P(CommandTableTest, MachineThrowing) {
    script().throw_error("GetMachine", "machine is in use");
    create_row();
    if (!row().takes_machine) return;
    EXPECT_EQ(calls(), calls_without_machine());
    m_log = {"ZX_LockMachine() GetMachine()failed: 'machine is in use'\n",
             "ZX_LockMachine() machine failed, can't start the command"};
    expect_ended_at_the_first_poll();
    EXPECT_EQ(channel_lines(), error_line("machine is in use"));
}

TEST_P(CommandTableTest, MachineThrowingSomethingForeign) {
    if (!row().takes_machine) {
        EXPECT_EQ(script().calls_of("GetMachine"), Texts());
        return;
    }
    script().throw_foreign("GetMachine");
    EXPECT_THROW(create_row(), scripted::Foreign);
    EXPECT_EQ(script().calls_of("ReleaseMachine"), Texts());
    EXPECT_TRUE(m_driver->driver_callbacks_installed());
}

TEST_P(CommandTableTest, AbortGoodAndNeverTwice) {
    create_row();
    calls();
    m_command->Abort();
    m_command->Abort();
    const std::string id = std::to_string(row().has_id ? script().last_id() : 0);
    EXPECT_EQ(calls(), row().aborts ? Texts{"Abort(" + id + ")"} : Texts());
    EXPECT_EQ(m_command->IsDone(), !row().has_id);
}

TEST_P(CommandTableTest, AbortFalse) {
    script().answer_false("Abort");
    create_row();
    m_command->Abort();
    m_command->Abort();
    EXPECT_EQ(script().calls_of("Abort").size(), row().aborts ? 1u : 0u);
    if (!row().aborts) return;
    EXPECT_EQ(channel_lines(), error_line("M2ZendrixCommand::Abort(): m_pZendrixCom->Abort() failed"));
    m_log = {"m_pZendrixCom->Abort() failed"};
    EXPECT_EQ(m_command->IsDone(), !row().has_id);
}

TEST_P(CommandTableTest, AbortThrowing) {
    script().throw_error("Abort", "t-id unused");
    create_row();
    m_command->Abort();
    m_command->Abort();
    EXPECT_EQ(script().calls_of("Abort").size(), row().aborts ? 1u : 0u);
    if (!row().aborts) return;
    EXPECT_EQ(channel_lines(), error_line("t-id unused"));
    m_log = {"m_pZendrixCom->Abort() failed: 't-id unused'\n"};
}

TEST_P(CommandTableTest, WithoutAClientThereIsNoCommand) {
    m_driver->Close();
    calls();
    EXPECT_EQ(row().create(*m_driver, &m_channel), nullptr);
    EXPECT_EQ(calls(), Texts());
}

INSTANTIATE_TEST_SUITE_P(All, CommandTableTest, ::testing::ValuesIn(command_table()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CommandTable, HasEveryRow) { EXPECT_EQ(command_table().size(), 36u); }

}  // namespace
