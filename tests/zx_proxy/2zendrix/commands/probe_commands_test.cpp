// Probe, probe-system, keypad, spin and wobble commands beyond what every command does.
#include <limits>

#include "command_fixture.h"

namespace {

using ProbeCommandsTest = CommandTest;
using Values = std::map<std::string, double>;

TEST_F(ProbeCommandsTest, ATipWithoutValuesIsDefinedByZeros) {
    create(&MMachAbstract::NewMMachProbeDefineCommand, 1l, 2l, Values());
    EXPECT_EQ(script().calls_of("ProbeDefine"), Texts{"ProbeDefine(1, 2, 0, 0, 0, 0)"});
}

TEST_F(ProbeCommandsTest, ValuesOfATipAreInLowerCase) {
    create(&MMachAbstract::NewMMachProbeDefineCommand, 1l, 2l,
           Values{{"X", 5}, {"y", 6}, {"D", 7}, {"xy", 8}});
    EXPECT_EQ(script().calls_of("ProbeDefine"), Texts{"ProbeDefine(1, 2, 0, 6, 0, 0)"});
}

TEST_F(ProbeCommandsTest, AThrownLineReachesTheChannelAsItsBareText) {
    script().throw_error("ProbeUnload", "error \"probe not loaded\"");
    create(&MMachAbstract::NewMMachProbeUnloadCommand);
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"probe not loaded\""});
    m_log = {"m_pZendrixCom->ProbeUnload() failed: 'error \"probe not loaded\"'"};
}

TEST_F(ProbeCommandsTest, EqualTextsOfExceptionAndCallbackAppearOnce) {
    script().on_call("ProbeLoad", [] { script().fire_error(1, "undefined tip"); });
    script().throw_error("ProbeLoad", "error \"undefined tip\"");
    create(&MMachAbstract::NewMMachProbeLoadCommand, 1l, 9l);
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"undefined tip\""});
    m_log = {"m_pZendrixCom->ProbeLoad() failed: 'error \"undefined tip\"'"};
}

TEST_F(ProbeCommandsTest, OffsetsKnowNoLimits) {
    const double highest = std::numeric_limits<double>::max();
    auto* offset = create(&MMachAbstract::NewMMachProbeOffsetCommand, AxisTargetMap{{"x", {highest, true}}});
    EXPECT_EQ(script().calls_of("ProbeOffset"), Texts{"ProbeOffset(1, x=1.79769313486e+308 flag 0)"});
    EXPECT_EQ(offset->m_targets.at("x").value, highest);
    EXPECT_EQ(script().calls_of("GetMachine"), Texts());
}

TEST_F(ProbeCommandsTest, AKeypadWithoutAxesStillTakesTheMachine) {
    create(&MMachAbstract::NewMMachKeypadEnableCommand, AxisSet());
    EXPECT_EQ(script().calls_of("GetMachine").size(), 1u);
    EXPECT_EQ(script().calls_of("KeyPad").size(), 1u);
    EXPECT_EQ(script().calls_of("KeyPad").front().find('"'), std::string::npos);
}

TEST_F(ProbeCommandsTest, AbortReachesTheClientFromWobbleButNotFromSpin) {
    create(&MMachAbstract::NewMMachSpinEnableCommand, std::map<std::string, bool>{{"a", true}})->Abort();
    create(&MMachAbstract::NewMMachSpinDisableCommand, AxisSet{"a"})->Abort();
    EXPECT_EQ(script().calls_of("Abort"), Texts());
    create(&MMachAbstract::NewMMachWobbleCommand, MMachWobbleParameters())->Abort();
    EXPECT_EQ(script().calls_of("Abort"), Texts{"Abort(0)"});
}

}  // namespace
