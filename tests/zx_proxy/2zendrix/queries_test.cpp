// The host's questions about axes, keypad, spin, initialisation, wobble and autoinfo.
#include "driver_fixture.h"
#include "errtrace.h"
#include "merrtrace.h"

namespace {

class QueriesTest : public DriverTest {
protected:
    // Shown in one text, null as "null".
    static std::string shown(const char* name) { return name ? name : "null"; }

    std::string walk_keypad() {
        std::string all;
        for (auto* name = driver->GetFirstKeypadAxis(); name; name = driver->GetNextKeypadAxis()) {
            all += std::string(name) + " ";
        }
        return all;
    }
    std::string walk_active_keypad() {
        std::string all;
        for (auto* name = driver->GetFirstActiveKeypadAxis(); name;
             name = driver->GetNextActiveKeypadAxis()) {
            all += std::string(name) + " ";
        }
        return all;
    }
};

TEST_F(QueriesTest, NoAxesCanAlwaysGoTogether) {
    EXPECT_TRUE(driver->IsScanningPossibleWith({}));
    EXPECT_TRUE(driver->IsMovePossibleWith({}));
    EXPECT_TRUE(driver->IsZeroMovePossibleWith({}));
    EXPECT_FALSE(driver->IsLimitMovePossibleWith({}));
    driver->m_hasMoveLimit = true;
    EXPECT_TRUE(driver->IsLimitMovePossibleWith({}));
    EXPECT_TRUE(script.calls().empty());
}

TEST_F(QueriesTest, WithoutAClientSomeAxesCannot) {
    driver->m_hasMoveLimit = true;
    EXPECT_FALSE(driver->IsScanningPossibleWith({"x"}));
    EXPECT_FALSE(driver->IsMovePossibleWith({"x"}));
    EXPECT_FALSE(driver->IsZeroMovePossibleWith({"x"}));
    EXPECT_FALSE(driver->IsLimitMovePossibleWith({"x"}));
    EXPECT_TRUE(driver->IsInitialized());
}

TEST_F(QueriesTest, TheMachineIsAskedInOneLine) {
    open();
    const std::pair<const char*, bool (MMachAbstract::*)(const AxisSet&)> queries[] = {
        {"moveaxis", &MMachAbstract::IsMovePossibleWith},
        {"movezeroaxis", &MMachAbstract::IsZeroMovePossibleWith},
        {"movelimitaxis", &MMachAbstract::IsLimitMovePossibleWith},
    };
    for (const auto& [word, query] : queries) {
        for (const Lines& reply :
             {Lines{"1"}, {"1", "0"}, {"0"}, {"11"}, {"1 "}, {" 1"}, {""}, {}, {"0", "1"}}) {
            answers.execute_reply = reply;
            EXPECT_EQ((driver.get()->*query)({"z", "x"}), !reply.empty() && reply[0] == "1");
            EXPECT_EQ(script.calls_of("Execute"), Lines{"Execute(\"" + std::string(word) + " x z \", null)"});
            script.take_calls();
        }
        script.throw_error("Execute", "no", 1);
        EXPECT_FALSE((driver.get()->*query)({"x"}));
        EXPECT_EQ(new_log_lines(),
                  Lines{"execute_cmd_and_wait(): Execute(" + std::string(word) + " x ) failed: no"});
        script.answer_false("Execute", 1);
        EXPECT_FALSE((driver.get()->*query)({"x"}));
        script.take_calls();
    }
}

TEST_F(QueriesTest, ScanningIsAskedOfTheClient) {
    open();
    EXPECT_TRUE(driver->IsScanningPossibleWith({"z", "x"}));
    EXPECT_EQ(script.take_calls(), Lines{"ScanAxis(2, \"x\", \"z\")"});
    answers.scan_axis = false;
    EXPECT_FALSE(driver->IsScanningPossibleWith({"x"}));
    script.throw_error("ScanAxis", "gone");
    EXPECT_FALSE(driver->IsScanningPossibleWith({"x"}));
    EXPECT_EQ(new_log_lines(), Lines{"IsScanningPossibleWith(): ScanAxis() failed: gone"});
}

TEST_F(QueriesTest, KeypadListsAreReadOnceAndInOrder) {
    answers.keypad_list = {"z", "x", "z"};
    answers.keypad_active = {"y"};
    open();
    recording::set_trace_level(4);
    EXPECT_EQ(walk_keypad(), "x z ");
    EXPECT_EQ(walk_keypad(), "x z ");
    EXPECT_EQ(driver->GetNextKeypadAxis(), nullptr);
    EXPECT_EQ(driver->GetNextKeypadAxis(), nullptr);
    EXPECT_EQ(walk_active_keypad(), "y ");
    EXPECT_EQ(walk_active_keypad(), "y ");
    EXPECT_EQ(script.take_calls(), (Lines{"KeyPadList(1)", "KeyPadActive()"}));
    EXPECT_EQ(trace_texts(), (Lines{"GetFirstKeypadAxisByList(): rebuild keypad list",
                                    "GetFirstKeypadAxisByList(): rebuild keypad active list"}));
}

TEST_F(QueriesTest, KeypadEventsRenewTheActiveListCapabilitiesTheOther) {
    open();
    walk_keypad();
    walk_active_keypad();
    script.take_calls();
    script.fire_async("keypad: changed");
    walk_keypad();
    walk_active_keypad();
    EXPECT_EQ(script.take_calls(), Lines{"KeyPadActive()"});
    script.fire_async("capabilities changed");
    script.take_calls();
    walk_keypad();
    walk_active_keypad();
    EXPECT_EQ(script.take_calls(), Lines{"KeyPadList(1)"});
}

TEST_F(QueriesTest, WithoutAClientThereIsNoFirstKeypadAxis) {
    answers.keypad_list = {"x", "y"};
    open();
    EXPECT_STREQ(driver->GetFirstKeypadAxis(), "x");
    driver->Close();
    EXPECT_STREQ(driver->GetNextKeypadAxis(), "y");
    EXPECT_EQ(driver->GetFirstKeypadAxis(), nullptr);
    EXPECT_EQ(driver->GetFirstActiveKeypadAxis(), nullptr);
    EXPECT_FALSE(driver->IsKeypadAxis("x"));
}

TEST_F(QueriesTest, AFailedKeypadListIsAskedAgain) {
    answers.keypad_list = answers.keypad_active = {"x"};
    open();
    walk_keypad();
    walk_active_keypad();
    driver->m_keypadList.dirty = driver->m_keypadActiveList.dirty = true;
    script.answer_false("KeyPadList");
    script.answer_false("KeyPadActive");
    EXPECT_EQ(driver->GetFirstKeypadAxis(), nullptr);
    EXPECT_EQ(driver->GetNextKeypadAxis(), nullptr);
    EXPECT_EQ(driver->GetFirstActiveKeypadAxis(), nullptr);
    EXPECT_EQ(new_log_lines(), (Lines{"M2ZendrixMachAbstract::GetFirstKeypadAxisByList(); "
                                      "m_pZendrixCom->KeyPadList(true) failed",
                                      "GetFirstKeypadAxis(); m_pZendrixCom->KeyPadList() failed"}));
    EXPECT_TRUE(driver->m_keypadList.dirty && driver->m_keypadActiveList.dirty);
    EXPECT_TRUE(driver->m_keypadList.names.empty());
    script.succeed("KeyPadList");
    script.succeed("KeyPadActive");
    EXPECT_EQ(walk_keypad() + walk_active_keypad(), "x x ");
}

TEST_F(QueriesTest, AThrowingKeypadListPassesAndIsAskedAgain) {
    answers.keypad_list = {"x"};
    open();
    script.throw_error("KeyPadList", "gone", 1);
    EXPECT_THROW(driver->GetFirstKeypadAxis(), CZendrixError);
    EXPECT_EQ(walk_keypad(), "x ");
}

TEST_F(QueriesTest, AnEventDuringARebuildIsNotLost) {
    answers.keypad_active = {"x"};
    open();
    script.on_call("KeyPadActive", [this] {
        script.on_call("KeyPadActive", nullptr);
        script.fire_async("keypad: changed");
    });
    EXPECT_EQ(walk_active_keypad(), "x ");
    EXPECT_TRUE(driver->m_keypadActiveList.dirty);
}

TEST_F(QueriesTest, AnyOtherKeypadListIsRefused) {
    open();
    KeypadAxisList other;
    EXPECT_EQ(driver->GetFirstKeypadAxisByList(other), nullptr);
    EXPECT_EQ(new_log_lines(), Lines{"GetFirstKeypadAxis(): invalid pointer"});
    EXPECT_TRUE(other.dirty);
}

TEST_F(QueriesTest, AKeypadAxisIsFoundByItsWholeName) {
    answers.keypad_list = {"x", "hb"};
    open();
    EXPECT_TRUE(driver->IsKeypadAxis("hb"));
    EXPECT_TRUE(driver->IsKeypadAxis("x"));
    EXPECT_FALSE(driver->IsKeypadAxis("h"));
    EXPECT_FALSE(driver->IsKeypadAxis(""));
    EXPECT_EQ(script.take_calls(), Lines{"KeyPadList(1)"});
}

TEST_F(QueriesTest, SpinAxesAreWalkedWithTheirValues) {
    answers.command_words = {"spin list"};
    answers.spin_list = {"b", "a"};
    answers.spin_active = {"-b", "a"};
    answers.spin_values = {2.0, 1.0};
    double value = 99.0;
    EXPECT_EQ(driver->GetFirstSpinAxis(), nullptr);
    EXPECT_EQ(driver->GetNextSpinAxis(), nullptr);
    EXPECT_EQ(driver->GetFirstActiveSpinAxis(&value), nullptr);
    EXPECT_EQ(value, 99.0);
    open();
    const char* first = driver->GetFirstSpinAxis();
    const char* next = driver->GetNextSpinAxis();
    EXPECT_STREQ(first, "a") << "each operation keeps its own text";
    EXPECT_STREQ(next, "b");
    EXPECT_EQ(driver->GetNextSpinAxis(), nullptr);
    EXPECT_STREQ(driver->GetFirstActiveSpinAxis(&value), "a");
    EXPECT_EQ(value, 1.0);
    EXPECT_STREQ(driver->GetNextActiveSpinAxis(&value), "b");
    EXPECT_EQ(value, -2.0);
    EXPECT_EQ(driver->GetNextActiveSpinAxis(&value), nullptr);
    EXPECT_EQ(value, -2.0);
    EXPECT_TRUE(driver->IsSpinAxis("a"));
    EXPECT_FALSE(driver->IsSpinAxis("c"));
    EXPECT_TRUE(script.take_calls().empty());
}

TEST_F(QueriesTest, ARefreshEndsASpinWalk) {
    answers.command_words = {"spin list"};
    answers.spin_list = {"a", "b"};
    open();
    EXPECT_STREQ(driver->GetFirstSpinAxis(), "a");
    script.fire_async("spin: changed");
    EXPECT_EQ(driver->GetNextSpinAxis(), nullptr);
}

TEST_F(QueriesTest, TheInitListIsTheDriversTheInitialisedAxesAreAsked) {
    answers.command_words = {"init list"};
    answers.init_list = {"x"};
    answers.init_active = {"y"};
    EXPECT_FALSE(driver->IsAxisInitialized("y"));
    EXPECT_TRUE(script.calls().empty());
    open();
    EXPECT_TRUE(driver->IsInInitList("x"));
    EXPECT_FALSE(driver->IsInInitList("y"));
    EXPECT_TRUE(script.take_calls().empty());
    EXPECT_TRUE(driver->IsAxisInitialized("y"));
    EXPECT_FALSE(driver->IsAxisInitialized("x"));
    EXPECT_EQ(script.take_calls(), (Lines{"InitActive()", "InitActive()"}));
    script.answer_false("InitActive", 1);
    EXPECT_FALSE(driver->IsAxisInitialized("y"));
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::IsAxisInitialized(): InitActive() failed"});
    script.throw_error("InitActive", "gone");
    EXPECT_THROW(driver->IsAxisInitialized("y"), CZendrixError);
}

TEST_F(QueriesTest, WobbleIsHandedThrough) {
    MMachWobbleParameters wobble;
    wobble.values[0] = 42.0;
    driver->GetWobbleParameters(wobble);
    EXPECT_EQ(wobble.values[0], 42.0) << "without a machine the record stays";
    open();
    for (int i = 0; i < 6; ++i) answers.wobble[i] = i + 1.5;
    driver->GetWobbleParameters(wobble);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(wobble.values[i], i + 1.5);
    answers.wobble[0] = 0.0;
    script.answer_false("GetWobble", 1);
    driver->GetWobbleParameters(wobble);
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::GetWobbleParameters(): GetWobble() failed"});
    script.throw_error("GetWobble", "gone", 1);
    driver->GetWobbleParameters(wobble);
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::GetWobbleParameters(): ZendrixCOM error: gone"});
    EXPECT_EQ(wobble.values[0], 1.5);
}

TEST_F(QueriesTest, AutoinfoRunsFromStartToStop) {
    open();
    EXPECT_FALSE(driver->IsAutoinfoActive());
    EXPECT_TRUE(driver->StartAutoinfo(7, 20, {"x", "y"}));
    EXPECT_EQ(script.calls_of("WatchAxisRT"), Lines{"WatchAxisRT(20, 50, {\"x\", \"y\"})"});
    EXPECT_TRUE(driver->IsAutoinfoActive());
    EXPECT_TRUE(script.fire_watch({1, 2, 3, 4}));
    EXPECT_EQ(notifier.count, 1);
    std::vector<double> record = {9.0};
    EXPECT_TRUE(driver->GetAutoinfo(record));
    EXPECT_EQ(record, (std::vector<double>{1, 2}));
    script.take_calls();
    driver->StopAutoinfo();
    EXPECT_EQ(script.take_calls(), (Lines{"WatchAxisRT(0, 0, 0, null)", "SetWatchAxisCallback(null, null)"}));
    EXPECT_FALSE(driver->IsAutoinfoActive());
    EXPECT_FALSE(driver->GetAutoinfo(record)) << "what was queued is dropped";
    EXPECT_EQ(record, (std::vector<double>{1, 2}));
    EXPECT_FALSE(script.fire_watch({1, 2}));
}

TEST_F(QueriesTest, AutoinfoWithoutAnIntervalSendsMinusOne) {
    open();
    EXPECT_TRUE(driver->StartAutoinfo(1, 0, {"x"}));
    EXPECT_EQ(script.take_calls().back(), "WatchAxisRT(-1, 50, {\"x\"})");
    EXPECT_TRUE(driver->StartAutoinfo(1, 0xFFFFFFFF, {"x"}));
    // As the client takes it: a long has the bits for it on some systems alone.
    const std::string longest = std::to_string(static_cast<long>(0xFFFFFFFF));
    EXPECT_EQ(script.take_calls().back(), "WatchAxisRT(" + longest + ", 50, {\"x\"})");
}

TEST_F(QueriesTest, AFailedStartStaysActiveUntilStop) {
    MErrTraceContext context("queries_test.cpp");
    EXPECT_FALSE(driver->StartAutoinfo(3, 1, {"x"}));
    EXPECT_TRUE(driver->IsAutoinfoActive()) << "also without a machine";
    driver->StopAutoinfo();
    EXPECT_TRUE(driver->IsAutoinfoActive()) << "nothing at all happens without one";
    open();
    script.answer_false("WatchAxisRT", 1);
    EXPECT_FALSE(driver->StartAutoinfo(3, 1, {"x"}));
    script.throw_error("WatchAxisRT", "gone", 1);
    EXPECT_FALSE(driver->StartAutoinfo(3, 1, {"x"}));
    EXPECT_EQ(recording::error_trace(),
              (Lines{"StartAutoinfo(): WatchAxisRT() failed", "StartAutoinfo: WatchAxisRT() failed: gone"}));
    EXPECT_TRUE(driver->IsAutoinfoActive());
    driver->StopAutoinfo();
    EXPECT_FALSE(driver->IsAutoinfoActive());
    MErrTrace_ClearContext();
    EXPECT_EQ(new_log_lines(), Lines());
}

TEST_F(QueriesTest, AFailedStopIsDumpedAndStopsAllTheSame) {
    open();
    for (const bool thrown : {false, true}) {
        driver->StartAutoinfo(3, 1, {"x"});
        script.fire_watch({1});
        thrown ? script.throw_error("WatchAxisRT", "gone", 1) : script.answer_false("WatchAxisRT", 1);
        driver->StopAutoinfo();
        EXPECT_EQ(new_log_lines(), Lines{thrown ? "StopAutoinfo: WatchAxisRT() failed: gone"
                                                : "StopAutoinfo(): WatchAxisRT() failed"});
        EXPECT_FALSE(driver->IsAutoinfoActive());
        EXPECT_TRUE(driver->autoinfo().empty());
        EXPECT_EQ(script.take_calls().back(), "SetWatchAxisCallback(null, null)");
    }
}

TEST_F(QueriesTest, ASecondStartReplacesTagAndAxesAndKeepsTheQueue) {
    open();
    driver->StartAutoinfo(3, 1, {"x", "y"});
    script.fire_watch({1, 2});
    EXPECT_TRUE(driver->StartAutoinfo(4, 1, {"z"}));
    script.fire_watch({5});
    EXPECT_EQ(driver->autoinfo(), (std::vector<std::vector<double>>{{1, 2}, {5}}));
}

}  // namespace
