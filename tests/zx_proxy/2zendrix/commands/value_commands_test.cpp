// Init, reset, get, set and modulo beyond what every command does.
#include "command_fixture.h"

namespace {

using ValueCommandsTest = CommandTest;

Texts names(const Texts& list) { return list; }

TEST_F(ValueCommandsTest, GetGivesOneValuePerNameInTheOrderOfTheNames) {
    script().answers.values = {{"a", 1.25}, {"x", -3.5}};
    auto* get = create(&MMachAbstract::NewMMachGetCommand, names({"x", "a", "x"}));
    EXPECT_TRUE(get->IsDone());
    EXPECT_EQ(get->m_values, (std::vector<double>{-3.5, 1.25, -3.5}));
    EXPECT_EQ(get->m_axes, names({"x", "a", "x"}));
}

TEST_F(ValueCommandsTest, GetWithoutNamesAsksForNothingAndGivesNothing) {
    auto* get = create(&MMachAbstract::NewMMachGetCommand, names({}));
    EXPECT_EQ(script().calls_of("Get").size(), 1u);
    EXPECT_TRUE(get->IsDone());
    EXPECT_TRUE(get->m_values.empty());
}

TEST_F(ValueCommandsTest, GetThatFailsGivesNoValues) {
    script().answers.values = {{"x", 1}};
    script().answer_false("Get", 1);
    script().throw_error("Get", "unknown axis", 2);
    EXPECT_TRUE(create(&MMachAbstract::NewMMachGetCommand, names({"x"}))->m_values.empty());
    EXPECT_TRUE(create(&MMachAbstract::NewMMachGetCommand, names({"x"}))->m_values.empty());
    EXPECT_EQ(channel_lines(), (Texts{"0007\terror \"M2ZendrixGetCommand(): unknown channel\"",
                                      "0007\terror \"unknown axis\""}));
    m_log = {"m_pZendrixCom->Get() failed: 'unknown axis'\n"};
}

TEST_F(ValueCommandsTest, GetSucceedsWhileAnotherHoldsTheMachine) {
    script().answer_false("GetMachine");
    script().answers.values = {{"x", 2}};
    EXPECT_EQ(create(&MMachAbstract::NewMMachGetCommand, names({"x"}))->m_values, std::vector<double>{2});
    EXPECT_EQ(script().calls_of("GetMachine"), Texts());
}

TEST_F(ValueCommandsTest, InitWithoutAxesIsForTheWholeMachine) {
    create(&MMachAbstract::NewMMachInitCommand, AxisSet());
    EXPECT_EQ(script().calls_of("Init"), Texts{"Init()"});
    EXPECT_EQ(script().calls_of("InitAxes"), Texts());
    EXPECT_FALSE(m_command->IsDone());
    script().fire_complete(script().last_id());
    EXPECT_TRUE(m_command->IsDone());
}

TEST_F(ValueCommandsTest, InitOfTheWholeMachineFailsInTheSameWords) {
    script().answer_false("Init", 1);
    script().throw_error("Init", "machine: emergency", 2);
    create(&MMachAbstract::NewMMachInitCommand, AxisSet());
    create(&MMachAbstract::NewMMachInitCommand, AxisSet());
    EXPECT_EQ(channel_lines(), (Texts{"0007\terror \"M2ZendrixInitCommand(): unknown channel\"",
                                      "0007\terror \"machine: emergency\""}));
    m_log = {"m_pZendrixCom->Init() failed: 'machine: emergency'\n"};
}

TEST_F(ValueCommandsTest, ARefusedResetAddsItsLineEachTime) {
    script().answer_false("Reset");
    create(&MMachAbstract::NewMMachResetCommand);
    create(&MMachAbstract::NewMMachResetCommand);
    const std::string line = "0007\terror \"internal error\"";
    EXPECT_EQ(channel_lines(), (Texts{line, line}));
    m_log = Texts(2, "M2ZendrixResetCommand(): Reset() failed");
}

TEST_F(ValueCommandsTest, SetWithoutValuesSendsAnEmptyList) {
    create(&MMachAbstract::NewMMachSetCommand, std::map<std::string, double>());
    EXPECT_EQ(script().calls_of("Set").size(), 1u);
    EXPECT_EQ(script().calls_of("Set").front().find('='), std::string::npos);
}

TEST_F(ValueCommandsTest, AbortOfModuloDoesNotReachTheClient) {
    create(&MMachAbstract::NewMMachModuloCommand, AxisSet{"c"})->Abort();
    EXPECT_EQ(script().calls_of("Abort"), Texts());
}

}  // namespace
