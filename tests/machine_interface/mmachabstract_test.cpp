#include "mmachabstract.h"

#include <gtest/gtest.h>

#include "bare_machine.h"

namespace {

class MachAbstract : public testing::Test {
protected:
    MachAbstract() { m_machine.m_axis.name = "x"; }
    void TearDown() override {
        EXPECT_TRUE(m_channel.get_text().empty());
        EXPECT_EQ(m_notifier.m_notified, 0);
    }

    MOutputChannel m_channel{7};
    CountingNotifier m_notifier;
    BareMachine m_machine{&m_channel, &m_notifier};
};

TEST_F(MachAbstract, KeepsWhatItIsGivenAndNothingElse) {
    EXPECT_EQ(m_machine.m_pOutput, &m_channel);
    EXPECT_EQ(m_machine.m_pNotifier, &m_notifier);
    EXPECT_EQ(m_machine.m_name, "four axes");
    EXPECT_EQ(m_machine.m_directory, "C:\\machines");
    EXPECT_EQ(m_machine.m_pProbesystemSource, nullptr);
    EXPECT_EQ(m_machine.m_pProbeSource, nullptr);
    EXPECT_EQ(m_machine.m_pMagazine, nullptr);
}

TEST_F(MachAbstract, DestructionLeavesChannelAndNotifierUntouched) {
    delete static_cast<MMachAbstract*>(new BareMachine(&m_channel, &m_notifier));
    EXPECT_TRUE(m_channel.is_empty());
    EXPECT_FALSE(m_channel.has_error());
    EXPECT_EQ(m_notifier.m_notified, 0);
}

// What answers false.
using Question = bool (*)(MMachAbstract&);
#define QUESTION(call)                                              \
    {                                                               \
#call, [](MMachAbstract & machine) { return machine.call; } \
    }

struct NamedQuestion {
    const char* name;
    Question ask;
};

const std::string name = "x";
const AxisSet axes = {"x", "z"};
std::vector<double> record;
std::string program;

const NamedQuestion false_by_default[] = {
    QUESTION(IsScanningPossibleWith(axes)),
    QUESTION(IsMovePossibleWith(axes)),
    QUESTION(IsLimitMovePossibleWith(axes)),
    QUESTION(IsZeroMovePossibleWith(axes)),
    QUESTION(Reserved27()),
    QUESTION(Reserved28()),
    QUESTION(HasKeypad()),
    QUESTION(IsKeypadAxis(name)),
    QUESTION(HasSpin()),
    QUESTION(IsSpinAxis(name)),
    QUESTION(Reserved42()),
    QUESTION(StartAutoinfo(1, 2, {})),
    QUESTION(GetAutoinfo(record)),
    QUESTION(IsAutoinfoActive()),
    QUESTION(Reserved47()),
    QUESTION(Reserved48()),
    QUESTION(Reserved50()),
    QUESTION(Reserved51()),
    QUESTION(Reserved52()),
    QUESTION(Reserved53()),
    QUESTION(Reserved54()),
    QUESTION(Reserved55()),
    QUESTION(Reserved56()),
    QUESTION(Reserved57()),
    QUESTION(Reserved58()),
    QUESTION(Reserved59()),
    QUESTION(Reserved60()),
    QUESTION(Reserved61()),
    QUESTION(HasProbesystems()),
    QUESTION(IsProbesystemDefined(name)),
    QUESTION(IsProbesystemIdDefined(name, 1)),
    QUESTION(IsProbesystemLoaded()),
    QUESTION(IsProbesystemSupported(name)),
    QUESTION(Reserved73()),
    QUESTION(HasProbes()),
    QUESTION(IsProbeDefined(1)),
    QUESTION(IsTipDefined(1, 1)),
    QUESTION(HasMagazine()),
    QUESTION(IsSlotDefined(1)),
    QUESTION(SetSlot(1, 1)),
    QUESTION(GetLoadProgram(program, 1)),
    QUESTION(GetUnloadProgram(program, 1)),
    QUESTION(GetChangeProgram(program, 1, 2)),
    QUESTION(HasInitList()),
    QUESTION(IsInInitList(name)),
    QUESTION(Reserved101()),
    QUESTION(Reserved102()),
    QUESTION(Reserved103()),
    QUESTION(Reserved104()),
    QUESTION(IsCommandEnabled(name)),
    QUESTION(QueryNotifier()),
};

TEST_F(MachAbstract, QuestionsAreFalseByDefault) {
    record = {1.0};
    program = "untouched";
    for (const NamedQuestion& question : false_by_default) {
        EXPECT_FALSE(question.ask(m_machine)) << question.name;
    }
    EXPECT_EQ(record, std::vector<double>{1.0});
    EXPECT_EQ(program, "untouched");
}

struct NamedPointer {
    const char* name;
    const void* (*ask)(MMachAbstract&);
};
#define POINTER(call)                                                              \
    {                                                                              \
#call, [](MMachAbstract & machine) -> const void* { return machine.call; } \
    }

double value = 3.0;

const NamedPointer null_by_default[] = {
    POINTER(GetComponentInfo(name)),
    POINTER(GetFirstComponentInfo()),
    POINTER(GetNextComponentInfo()),
    POINTER(GetFirstOptionInfo()),
    POINTER(GetNextOptionInfo()),
    POINTER(Reserved29()),
    POINTER(GetFirstKeypadAxis()),
    POINTER(GetNextKeypadAxis()),
    POINTER(GetFirstActiveKeypadAxis()),
    POINTER(GetNextActiveKeypadAxis()),
    POINTER(GetFirstSpinAxis()),
    POINTER(GetNextSpinAxis()),
    POINTER(GetFirstActiveSpinAxis(&value)),
    POINTER(GetNextActiveSpinAxis(&value)),
    POINTER(GetFirstSupportedProbesystem()),
    POINTER(GetNextSupportedProbesystem()),
    POINTER(Reserved74()),
    POINTER(Reserved75()),
    POINTER(Reserved76()),
    POINTER(Reserved77()),
};

TEST_F(MachAbstract, LookUpsAreNullByDefault) {
    value = 3.0;
    for (const NamedPointer& pointer : null_by_default) {
        EXPECT_EQ(pointer.ask(m_machine), nullptr) << pointer.name;
    }
    EXPECT_EQ(value, 3.0);
}

TEST_F(MachAbstract, OtherDefaults) {
    EXPECT_EQ(m_machine.GetDefaultConstant(), 5.0);
    EXPECT_TRUE(m_machine.IsAxisInitialized("x"));
    EXPECT_TRUE(m_machine.ListProbesystems("", 0).empty());
    EXPECT_EQ(m_machine.GetActiveProbesystemName(), "");
    EXPECT_EQ(m_machine.GetActiveProbesystemIdNum(), 0);
    EXPECT_TRUE(m_machine.ListProbes(0, 0).empty());
    EXPECT_EQ(m_machine.GetMaxProbeNum(), 0);
    EXPECT_EQ(m_machine.GetMinProbeNum(), 0);
    EXPECT_EQ(m_machine.GetActiveProbeNum(), 0);
    EXPECT_EQ(m_machine.GetActiveTipNum(), 0);
    EXPECT_EQ(m_machine.GetSlotOfProbe(1), 0U);
    EXPECT_TRUE(m_machine.GetSlots("", 0).empty());
    EXPECT_EQ(m_machine.Reserved95(), "");
    m_machine.StopAutoinfo();
    m_machine.Reserved49();
}

TEST_F(MachAbstract, RecordsByDefault) {
    const MMachProbesystemType type = m_machine.GetActiveProbesystemType();
    EXPECT_EQ(type.type, 1);
    EXPECT_EQ(type.a, 0);
    EXPECT_EQ(type.b, 0);
    EXPECT_EQ(type.c, 0.0);
    EXPECT_EQ(type.d, 0.0);
    const MMachReservedRecord reserved = m_machine.Reserved78();
    EXPECT_EQ(reserved.first, 0);
    EXPECT_EQ(reserved.second, 0);
    EXPECT_EQ(reserved.third, 0.0);
    MMachWobbleParameters wobble{{1, 2, 3, 4, 5, 6}};
    m_machine.GetWobbleParameters(wobble);
    for (const double number : wobble.values) EXPECT_EQ(number, 0.0);
}

TEST_F(MachAbstract, NotificationsAreForwarded) {
    EXPECT_TRUE(m_machine.Notify());
    m_notifier.m_result = false;
    EXPECT_FALSE(m_machine.Notify());
    EXPECT_EQ(m_notifier.m_notified, 2);
    m_notifier.m_waiting = -1;
    EXPECT_TRUE(m_machine.QueryNotifier());
    EXPECT_EQ(m_notifier.m_notified, 2);
    m_notifier.m_notified = 0;
}

std::map<std::string, bool> commands_of(BareMachine& machine) OS_NO_THREAD_SAFETY_ANALYSIS {
    return machine.m_commands;
}

TEST_F(MachAbstract, AskingForAnUnknownCommandAddsNothing) {
    EXPECT_FALSE(m_machine.IsCommandEnabled("MMachMoveCommand"));
    EXPECT_TRUE(commands_of(m_machine).empty());
}

TEST_F(MachAbstract, CommandsAreEnabledAndDisabledInOneEntry) {
    m_machine.DisableCommand("MMachMoveCommand");
    EXPECT_EQ(commands_of(m_machine), (std::map<std::string, bool>{{"MMachMoveCommand", false}}));
    m_machine.EnableCommand("MMachMoveCommand");
    EXPECT_EQ(commands_of(m_machine), (std::map<std::string, bool>{{"MMachMoveCommand", true}}));
    EXPECT_TRUE(m_machine.IsCommandEnabled("MMachMoveCommand"));
    EXPECT_FALSE(m_machine.IsCommandEnabled("MMachMove"));
    m_machine.DisableCommand("MMachMoveCommand");
    EXPECT_FALSE(m_machine.IsCommandEnabled("MMachMoveCommand"));
    m_machine.EnableCommand("MMachGetCommand");
    EXPECT_TRUE(m_machine.IsCommandEnabled("MMachGetCommand"));
    EXPECT_EQ(commands_of(m_machine).size(), 2U);
}

TEST_F(MachAbstract, AxisTestsReadTheFlags) {
    for (std::uint32_t flags = 0; flags < 256; ++flags) {
        m_machine.m_axis.flags = flags;
        const auto bit = [flags](int number) { return (flags >> number & 1U) != 0; };
        ASSERT_TRUE(m_machine.IsAxisDefined("x"));
        ASSERT_EQ(m_machine.IsAxisActive("x"), !bit(4)) << flags;
        ASSERT_EQ(m_machine.TestAxisA("x"), !bit(4) && (bit(0) || bit(2))) << flags;
        ASSERT_EQ(m_machine.TestAxisB("x"), !bit(4) && bit(3)) << flags;
        ASSERT_EQ(m_machine.TestAxisC("x"), !bit(4) && (bit(0) || bit(1))) << flags;
        ASSERT_EQ(m_machine.TestAxisD("x"), bit(5)) << flags;
        ASSERT_EQ(m_machine.TestAxisE("x"), bit(6)) << flags;
    }
}

TEST_F(MachAbstract, AxisTestsAreFalseForAnUnknownAxis) {
    m_machine.m_axis.flags = 0xFF & ~16U;
    EXPECT_FALSE(m_machine.IsAxisDefined("y"));
    EXPECT_FALSE(m_machine.IsAxisActive("y"));
    EXPECT_FALSE(m_machine.TestAxisA("y"));
    EXPECT_FALSE(m_machine.TestAxisB("y"));
    EXPECT_FALSE(m_machine.TestAxisC("y"));
    EXPECT_FALSE(m_machine.TestAxisD("y"));
    EXPECT_FALSE(m_machine.TestAxisE("y"));
}

class MachineWithComponent : public BareMachine {
public:
    using BareMachine::BareMachine;
    const MMachComponentInfo* GetComponentInfo(const std::string& component) override {
        return component == m_component.name ? &m_component : nullptr;
    }
    MMachComponentInfo m_component{"probe", "1.0", 0};
};

TEST_F(MachAbstract, ComponentTestsAskTheSubclassAndReadTheState) {
    MachineWithComponent machine(&m_channel, &m_notifier);
    for (int state = 0; state < 32; ++state) {
        machine.m_component.state = state;
        EXPECT_EQ(machine.TestComponentA("probe"), (state & 1) != 0 && (state & 8) == 0) << state;
        EXPECT_EQ(machine.TestComponentB("probe"), (state & 2) != 0 && (state & 8) == 0) << state;
        EXPECT_FALSE(machine.TestComponentA("keypad"));
        EXPECT_FALSE(machine.TestComponentB("keypad"));
    }
    EXPECT_FALSE(m_machine.TestComponentA("probe"));
}

}  // namespace
