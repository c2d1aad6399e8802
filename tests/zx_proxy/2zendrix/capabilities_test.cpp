// The picture of the machine: how it is filled, renewed, and what a failure leaves of it.
#include <algorithm>
#include <cmath>
#include <limits>

#include "driver_fixture.h"

namespace {

class CapabilitiesTest : public DriverTest {
protected:
    static CAxis axis(const std::string& name, int kind, double number4, double number5) {
        CAxis axis;
        axis.name = name;
        axis.kind = kind;
        axis.number4 = number4;
        axis.number5 = number5;
        axis.step = 0.001;
        return axis;
    }

    std::uint32_t flags_of(const std::string& name, int kind, double number4, double number5,
                           const Lines& keypad = {}) {
        return driver->convert_capabilities(axis(name, kind, number4, number5), keypad)->flags;
    }
};

struct Command {
    const char* word;
    const char* class_name;
};

// Written down once more, so that a slip in the driver's table shows.
const Command commands[] = {
    {"get", "MMachGetCommand"},
    {"init", "MMachInitCommand"},
    {"keypad disable", "MMachKeypadDisableCommand"},
    {"keypad enable", "MMachKeypadEnableCommand"},
    {"modulo", "MMachModuloCommand"},
    {"move", "MMachMoveCommand"},
    {"movebase", "MMachMovebaseCommand"},
    {"movepoly", "MMachMovepolyCommand"},
    {"movecircle", "MMachMovecircleCommand"},
    {"movecone", "MMachMoveconeCommand"},
    {"movehome", "MMachMovehomeCommand"},
    {"movezero", "MMachMovezeroCommand"},
    {"probe change", "MMachProbeChangeCommand"},
    {"probe define", "MMachProbeDefineCommand"},
    {"probe delete", "MMachProbeDeleteCommand"},
    {"probe load", "MMachProbeLoadCommand"},
    {"probe offset", "MMachProbeOffsetCommand"},
    {"probe unload", "MMachProbeUnloadCommand"},
    {"probesystem define", "MMachProbesystemDefineCommand"},
    {"probesystem delete", "MMachProbesystemDeleteCommand"},
    {"probesystem load", "MMachProbesystemLoadCommand"},
    {"probesystem unload", "MMachProbesystemUnloadCommand"},
    {"receive", "MMachReceiveCommand"},
    {"scancircle", "MMachScancircleCommand"},
    {"scancone", "MMachScanconeCommand"},
    {"scan", "MMachScanCommand"},
    {"scanbase", "MMachScanbaseCommand"},
    {"scandata", "MMachScandataCommand"},
    {"scanpoint", "MMachScanpointCommand"},
    {"scanpoly", "MMachScanpolyCommand"},
    {"send", "MMachSendCommand"},
    {"set", "MMachSetCommand"},
    {"spin enable", "MMachSpinEnableCommand"},
    {"spin disable", "MMachSpinDisableCommand"},
    {"wobble", "MMachWobbleCommand"},
};

TEST_F(CapabilitiesTest, EachWordEnablesItsClassAlone) {
    static_assert(std::size(commands) == 35);
    open();
    for (const Command& command : commands) {
        answers.command_words = {"reset", command.word, "something else"};
        driver->enable_supported_commands();
        for (const Command& other : commands) {
            EXPECT_EQ(driver->IsCommandEnabled(other.class_name), other.word == command.word)
                << command.word << ", " << other.class_name;
        }
        EXPECT_FALSE(driver->IsCommandEnabled("MMachResetCommand"));
    }
}

TEST_F(CapabilitiesTest, CommandsAreMarkedInTheOrderOfTheTable) {
    struct Marking : OpenDriver {
        using OpenDriver::OpenDriver;
        void EnableCommand(const std::string& name) override { marks.push_back("+" + name); }
        void DisableCommand(const std::string& name) override { marks.push_back("-" + name); }
        Lines marks;
    } marking(&channel, &notifier, "none", "none");
    marking.m_registry = &registry;
    answers.command_words = {"wobble", "get", "scan"};
    ASSERT_TRUE(marking.Open());
    Lines expected;
    for (const Command& command : commands) {
        const bool has = std::ranges::count(answers.command_words, command.word) != 0;
        expected.push_back((has ? "+" : "-") + std::string(command.class_name));
    }
    EXPECT_EQ(marking.marks, expected);
}

TEST_F(CapabilitiesTest, WordsAreComparedExactly) {
    open();
    answers.command_words = {"Move", "move ", "mov", "keypad  enable", "Keypad list"};
    driver->enable_supported_commands();
    EXPECT_FALSE(driver->IsCommandEnabled("MMachMoveCommand"));
    EXPECT_FALSE(driver->IsCommandEnabled("MMachKeypadEnableCommand"));
    EXPECT_FALSE(driver->HasKeypad());
}

TEST_F(CapabilitiesTest, SixWordsRaiseAFlagForGood) {
    const std::pair<const char*, std::atomic<bool> OpenDriver::*> flags[] = {
        {"probesystem info", &OpenDriver::m_hasProbesystems},
        {"probe info", &OpenDriver::m_hasProbes},
        {"spin list", &OpenDriver::m_hasSpin},
        {"init list", &OpenDriver::m_hasInitList},
        {"movelimitaxis", &OpenDriver::m_hasMoveLimit},
        {"keypad list", &OpenDriver::m_hasKeypad},
    };
    const auto raised = [&] {
        std::vector<bool> up;
        for (const auto& flag : flags) up.push_back((*driver.*flag.second).load());
        return up;
    };
    open();
    EXPECT_EQ(raised(), std::vector<bool>(6, false));
    for (std::size_t i = 0; i < std::size(flags); ++i) {
        answers.command_words = {flags[i].first};
        driver->enable_supported_commands();
        std::vector<bool> expected(6, false);
        std::fill_n(expected.begin(), i + 1, true);
        EXPECT_EQ(raised(), expected) << flags[i].first;
    }
    answers.command_words = {};
    driver->enable_supported_commands();
    EXPECT_EQ(raised(), std::vector<bool>(6, true));
    EXPECT_TRUE(driver->HasProbesystems() && driver->HasProbes() && driver->HasSpin() &&
                driver->HasInitList() && driver->HasKeypad());
    EXPECT_FALSE(driver->Reserved42());
}

TEST_F(CapabilitiesTest, ACommandSetThatFailsChangesNothing) {
    answers.command_words = {"move", "keypad list"};
    open();
    answers.command_words = {"scan"};
    script.answer_false("CommandSet", 1);
    driver->enable_supported_commands();
    EXPECT_EQ(new_log_lines(),
              Lines{"M2ZendrixMachAbstract::enable_supported_commands(): CommandSet() failed"});
    script.throw_error("CommandSet", "gone");
    driver->enable_supported_commands();
    EXPECT_EQ(new_log_lines(),
              Lines{"M2ZendrixMachAbstract::enable_supported_commands(): CommandSet() failed: 'gone'"});
    EXPECT_TRUE(driver->IsCommandEnabled("MMachMoveCommand"));
    EXPECT_FALSE(driver->IsCommandEnabled("MMachScanCommand"));
}

TEST_F(CapabilitiesTest, WithoutAClientNoRefreshAsksOrChangesAnything) {
    answers.command_words = {"move", "keypad list", "spin list", "init list"};
    answers.init_list = {"x"};
    answers.spin_list = {"s"};
    open();
    driver->Close();
    script.take_calls();
    driver->enable_supported_commands();
    driver->update_capabilities();
    driver->update_init_list();
    driver->update_spin_lists();
    driver->update_cached_axes_values();
    EXPECT_TRUE(script.calls().empty());
    EXPECT_TRUE(driver->IsCommandEnabled("MMachMoveCommand"));
    EXPECT_EQ(driver->init_list(), std::set<std::string>{"x"});
    EXPECT_EQ(driver->spin_list(), std::set<std::string>{"s"});
}

TEST_F(CapabilitiesTest, FlagsOfEachKind) {
    EXPECT_EQ(flags_of("x", 0, 0, 0), 2U);
    EXPECT_EQ(flags_of("x", 1, 0, 0), 4U);
    EXPECT_EQ(flags_of("x", 2, 0, 0), 6U);
    EXPECT_EQ(flags_of("x", 3, 0, 0), 1U);
    EXPECT_EQ(flags_of("x", 4, 0, 0), 16U);
    EXPECT_EQ(flags_of("x", 0, -1, 1), 10U);
    EXPECT_EQ(flags_of("x", 1, -1, 1), 8U);
    EXPECT_EQ(flags_of("x", 2, -1, 1), 10U);
    EXPECT_EQ(flags_of("x", 3, -1, 1), 9U);
    EXPECT_EQ(flags_of("x", 4, -1, 1), 24U);
    EXPECT_EQ(flags_of("x", 3, 0, 1), 1U);
    EXPECT_EQ(flags_of("x", 1, 1, 0), 0U);
    EXPECT_EQ(flags_of("x", 5, 0, 0), 0U);
    EXPECT_EQ(flags_of("x", -1, 1, 1), 8U);
}

TEST_F(CapabilitiesTest, ZeroIsComparedExactly) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(flags_of("x", 1, nan, nan), 8U);
    EXPECT_EQ(flags_of("x", 1, nan, 0), 0U);
    EXPECT_EQ(flags_of("x", 1, nan, 1), 8U);
    EXPECT_EQ(flags_of("x", 1, 5e-324, 5e-324), 8U);
    EXPECT_EQ(flags_of("x", 1, -0.0, 0.0), 4U);
}

TEST_F(CapabilitiesTest, SixNamesAreRotary) {
    for (const char* name : {"c", "ha", "hb", "hc", "ka", "kb"})
        EXPECT_EQ(flags_of(name, 5, 0, 0), 32U) << name;
    for (const char* name : {"hd", "C", "a", "kc", "cc", ""}) EXPECT_EQ(flags_of(name, 5, 0, 0), 0U) << name;
}

TEST_F(CapabilitiesTest, OnTheKeypadCountsForBoundedAxesOnly) {
    EXPECT_EQ(flags_of("x", 1, 1, 1, {"y", "x"}), 72U);
    EXPECT_EQ(flags_of("x", 1, 0, 0, {"y", "x"}), 4U);
    EXPECT_EQ(flags_of("x", 1, 1, 1, {"xx", "X"}), 8U);
    EXPECT_EQ(flags_of("hb", 4, 1, 1, {"hb"}), 16U + 8U + 32U + 64U);
}

TEST_F(CapabilitiesTest, NumbersAreCopiedTwoOfThemCrosswise) {
    CAxis from = axis("x", 1, 4.0, 5.0);
    from.number1 = 1.0;
    from.number2 = 2.0;
    from.number3 = 3.0;
    const MMachAxisInfo* info = driver->convert_capabilities(from, {});
    EXPECT_EQ(info, driver->GetAxisInfo("x"));
    EXPECT_EQ(info->name, "x");
    EXPECT_EQ(info->number1, 1.0);
    EXPECT_EQ(info->number2, 2.0);
    EXPECT_EQ(info->number3, 3.0);
    EXPECT_EQ(info->number4, 5.0);
    EXPECT_EQ(info->number5, 4.0);
    EXPECT_EQ(info->step, 0.001);
}

TEST_F(CapabilitiesTest, ARecordIsRenewedInPlace) {
    const MMachAxisInfo* info = driver->convert_capabilities(axis("x", 1, 4.0, 5.0), {});
    EXPECT_EQ(driver->convert_capabilities(axis("x", 4, 0.0, 6.0), {}), info);
    EXPECT_EQ(info->flags, 16U);
    EXPECT_EQ(info->number4, 6.0);
    EXPECT_EQ(info->number5, 0.0);
}

TEST_F(CapabilitiesTest, ValuesCountWithoutAStepAndAdd) {
    CAxis from = axis("x", 1, 0, 0);
    from.values = {3.0, 1.0, 3.0};
    const MMachAxisInfo* info = driver->convert_capabilities(from, {});
    EXPECT_TRUE(info->values.empty());
    from.step = 0.0;
    driver->convert_capabilities(from, {});
    EXPECT_EQ(info->values, (std::set<double>{1.0, 3.0}));
    from.values = {2.0};
    driver->convert_capabilities(from, {});
    EXPECT_EQ(info->values, (std::set<double>{1.0, 2.0, 3.0}));
}

TEST_F(CapabilitiesTest, ARecordIsKeyedByTheNameInIt) {
    answers.capabilities["key"] = axis("name", 1, 0, 0);
    open();
    EXPECT_NE(driver->GetAxisInfo("name"), nullptr);
    EXPECT_EQ(driver->GetAxisInfo("key"), nullptr);
}

TEST_F(CapabilitiesTest, WithoutAKeypadItsListIsNotAsked) {
    answers.keypad_list = {"x"};
    answers.capabilities["x"] = axis("x", 1, 1, 1);
    open();
    driver->update_capabilities();
    EXPECT_EQ(script.take_calls(), Lines{"Capabilities(0)"});
    EXPECT_EQ(driver->GetAxisInfo("x")->flags, 8U);
    EXPECT_FALSE(driver->HasKeypad());
}

TEST_F(CapabilitiesTest, TheKeypadListIsAskedAsTheMachineUnderstands) {
    answers.command_words = {"keypad list"};
    answers.keypad_list = {"x"};
    answers.capabilities["x"] = axis("x", 1, 1, 1);
    for (const bool inactive_too : {false, true}) {
        answers.minor_revision = inactive_too ? 2 : 1;
        open();
        driver->update_capabilities();
        EXPECT_EQ(script.take_calls(),
                  (Lines{"Capabilities(0)", inactive_too ? "KeyPadList(1)" : "KeyPadList(0)"}));
        EXPECT_EQ(driver->GetAxisInfo("x")->flags, 72U);
        driver->Close();
    }
}

TEST_F(CapabilitiesTest, AFailedQueryLeavesTheAxesAsTheyAre) {
    answers.capabilities["x"] = axis("x", 1, 1, 1);
    open();
    answers.capabilities.clear();
    driver->update_capabilities();
    EXPECT_NE(driver->GetAxisInfo("x"), nullptr) << "nothing is ever removed";
    script.answer_false("Capabilities");
    driver->update_capabilities();
    script.succeed("Capabilities");
    script.throw_error("Capabilities", "gone");
    EXPECT_THROW(driver->update_capabilities(), CZendrixError);
    EXPECT_EQ(driver->GetAxisInfo("x")->flags, 8U);
}

TEST_F(CapabilitiesTest, TheInitListIsReplaced) {
    answers.command_words = {"init list"};
    answers.init_list = {"x", "y"};
    open();
    answers.init_list = {"z", "z"};
    driver->update_init_list();
    EXPECT_EQ(driver->init_list(), std::set<std::string>{"z"});
    script.answer_false("InitList");
    driver->update_init_list();
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::update_init_list(): InitList() failed"});
    EXPECT_TRUE(driver->init_list().empty());
}

TEST_F(CapabilitiesTest, AThrowingInitListPassesThroughAndGivesItsLockBack) {
    answers.command_words = {"init list"};
    answers.init_list = {"x"};
    open();
    script.throw_error("InitList", "gone", 1);
    EXPECT_THROW(driver->update_init_list(), CZendrixError);
    EXPECT_TRUE(driver->init_list().empty());
    driver->update_init_list();
    EXPECT_EQ(driver->init_list(), std::set<std::string>{"x"});
}

TEST_F(CapabilitiesTest, WithoutTheirWordsListsAreNotAsked) {
    open();
    driver->update_init_list();
    driver->update_spin_lists();
    EXPECT_TRUE(script.take_calls().empty());
}

using SpinAxes = std::map<std::string, double>;

TEST_F(CapabilitiesTest, TheSignOfASpinAxisGoesIntoItsValue) {
    answers.command_words = {"spin list"};
    answers.spin_list = {"x", "y", "z", "x"};
    answers.spin_active = {"-x", "+y", "z", "x", "--w", ""};
    answers.spin_values = {3.0, 3.0, -4.0, 9.0, 1.0, 2.0};
    open();
    EXPECT_EQ(driver->spin_list(), (std::set<std::string>{"x", "y", "z"}));
    EXPECT_EQ(driver->spin_active(),
              (SpinAxes{{"", 2.0}, {"-w", -1.0}, {"x", -3.0}, {"y", 3.0}, {"z", -4.0}}));
}

TEST_F(CapabilitiesTest, MissingSpinValuesCountAsZero) {
    answers.command_words = {"spin list"};
    answers.spin_active = {"x", "y"};
    answers.spin_values = {1.0};
    open();
    EXPECT_EQ(driver->spin_active(), (SpinAxes{{"x", 1.0}, {"y", 0.0}}));
    answers.spin_values = {1.0, 2.0, 3.0};
    driver->update_spin_lists();
    EXPECT_EQ(driver->spin_active(), (SpinAxes{{"x", 1.0}, {"y", 2.0}}));
}

TEST_F(CapabilitiesTest, AFailedSpinQueryEmptiesItsCacheAlone) {
    answers.command_words = {"spin list"};
    answers.spin_list = {"x"};
    answers.spin_active = {"x"};
    answers.spin_values = {1.0};
    open();
    script.answer_false("SpinList");
    driver->update_spin_lists();
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::update_spin_lists(): SpinList() failed"});
    EXPECT_TRUE(driver->spin_list().empty());
    EXPECT_EQ(driver->spin_active().size(), 1U);
    script.succeed("SpinList");
    script.answer_false("SpinActive");
    driver->update_spin_lists();
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::update_spin_lists(): SpinActive() failed"});
    EXPECT_EQ(driver->spin_list().size(), 1U);
    EXPECT_TRUE(driver->spin_active().empty());
}

TEST_F(CapabilitiesTest, AThrowingSpinQueryLeavesBothCaches) {
    answers.command_words = {"spin list"};
    answers.spin_list = {"x"};
    answers.spin_active = {"x"};
    answers.spin_values = {1.0};
    open();
    for (const std::string operation : {"SpinList", "SpinActive"}) {
        script.throw_error(operation, "gone");
        EXPECT_THROW(driver->update_spin_lists(), CZendrixError);
        script.succeed(operation);
    }
    EXPECT_EQ(driver->spin_list().size(), 1U);
    EXPECT_EQ(driver->spin_active().size(), 1U);
}

TEST_F(CapabilitiesTest, CachedAxesAreRefreshedTogether) {
    for (const char* name : {"z", "x", "y"}) driver->m_cachedAxes.add(name);
    answers.values = {{"x", 1.0}, {"y", 2.0}, {"z", 3.0}};
    open();
    answers.values["y"] = 20.0;
    driver->update_cached_axes_values();
    EXPECT_EQ(script.take_calls(), Lines{"Get({x=0 flag -1, y=0 flag -1, z=0 flag -1})"});
    EXPECT_EQ(driver->GetAxisValue("x"), 1.0);
    EXPECT_EQ(driver->GetAxisValue("y"), 20.0);
    EXPECT_EQ(driver->GetAxisValue("z"), 3.0);
    EXPECT_TRUE(script.take_calls().empty());
}

TEST_F(CapabilitiesTest, AFailedRefreshKeepsTheOldValues) {
    driver->m_cachedAxes.add("x");
    answers.values = {{"x", 1.0}};
    open();
    answers.values = {{"x", 2.0}};
    script.answer_false("Get", 1);
    driver->update_cached_axes_values();
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::update_cached_axes_values(): Get() failed"});
    EXPECT_EQ(driver->GetAxisValue("x"), 1.0);
    script.throw_error("Get", "gone", 1);
    driver->update_cached_axes_values();
    EXPECT_EQ(new_log_lines(),
              Lines{"M2ZendrixMachAbstract::update_cached_axes_values(): Get() failed: gone"});
    EXPECT_EQ(driver->GetAxisValue("x"), 1.0);
    // A foreign exception passes, and the next refresh runs.
    script.throw_foreign("Get", 1);
    EXPECT_THROW(driver->update_cached_axes_values(), scripted::Foreign);
    driver->update_cached_axes_values();
    EXPECT_EQ(driver->GetAxisValue("x"), 2.0);
}

TEST_F(CapabilitiesTest, ARefreshWithinARefreshReturnsAtOnce) {
    driver->m_cachedAxes.add("x");
    open();
    // The same thread comes again, as it does when the query's own error arrives.
    script.on_call("Get", [this] {
        driver->update_cached_axes_values();
        script.fire_error(0, "f");
    });
    driver->update_cached_axes_values();
    EXPECT_EQ(script.take_calls(), Lines{"Get({x=0 flag -1})"});
}

}  // namespace
