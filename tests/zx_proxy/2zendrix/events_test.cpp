// The driver's callbacks, played on the test's thread.
#include "driver_fixture.h"
#include "merrtrace.h"

namespace {

class EventsTest : public DriverTest {
protected:
    void expect_nothing_queued() {
        EXPECT_EQ(driver->events(), Lines());
        EXPECT_EQ(driver->errors(), Lines());
        EXPECT_EQ(driver->warnings(), Lines());
    }
};

TEST_F(EventsTest, ACompletionEntersItsIdAndNotifies) {
    recording::set_trace_level(5);
    open();
    recording::reset();
    recording::set_trace_level(5);
    script.fire_complete(12);
    EXPECT_EQ(driver->finished_ids(), std::set<long>{12});
    EXPECT_EQ(notifier.count, 1);
    EXPECT_EQ(trace_texts(), Lines{"M2ZendrixMachAbstract::command_complete_callback(): cmd id 12 done"});
}

TEST_F(EventsTest, ACompletionWithoutAnIdOnlyNotifies) {
    open();
    script.fire_complete(0);
    EXPECT_TRUE(driver->finished_ids().empty());
    EXPECT_EQ(notifier.count, 1);
}

TEST_F(EventsTest, AnIdThatCompletesTwiceIsLoggedOnce) {
    open();
    script.fire_complete(5);
    EXPECT_EQ(new_log_lines(), Lines());
    script.fire_complete(5);
    EXPECT_EQ(new_log_lines(),
              Lines{"M2ZendrixMachAbstract::command_complete_callback(): command with id 5 finished, but old "
                    "command was not harvested, yet. Deadlock possible!"});
    EXPECT_EQ(notifier.count, 2);
    EXPECT_TRUE(driver->take_finished_id(5));
    EXPECT_FALSE(driver->take_finished_id(5));
}

TEST_F(EventsTest, AfterAHarvestAnIdCanCompleteAgain) {
    open();
    script.fire_complete(5);
    EXPECT_TRUE(driver->take_finished_id(5));
    script.fire_complete(5);
    EXPECT_EQ(new_log_lines(), Lines());
    EXPECT_TRUE(driver->take_finished_id(5));
}

TEST_F(EventsTest, EveryCompletionRefreshesTheCachedAxesBeforeTheHostHears) {
    driver->m_cachedAxes.add("x");
    open();
    double seen = 0.0;
    notifier.on_notify = [&] { seen = driver->GetAxisValue("x"); };
    answers.values["x"] = 1.5;
    script.fire_complete(0);
    EXPECT_EQ(seen, 1.5);
    answers.values["x"] = 2.5;
    script.fire_complete(9);
    EXPECT_EQ(seen, 2.5);
}

TEST_F(EventsTest, AFailedNotifyIsLoggedWithTheCallbacksName) {
    open();
    driver->watch({"x"});
    notifier.answer = false;
    notifier.on_notify = [] { _MErrTrace_Add("%s", "the host's reason"); };
    script.fire_complete(1);
    script.fire_async("e");
    script.fire_error(0, "f");
    script.fire_warning(0, "w");
    double values[] = {1.0};
    OpenDriver::autoinfo_callback(driver.get(), 1, values);
    Lines expected;
    for (const char* callback : {"command_complete_callback", "async_events_callback",
                                 "async_errors_callback", "async_warnings_callback", "autoinfo_callback"}) {
        expected.push_back("the host's reason");
        expected.push_back(std::string("M2ZendrixMachAbstract::") + callback + "(): Notify() failed");
    }
    EXPECT_EQ(new_log_lines(), expected);
    // Nothing is lost by it.
    EXPECT_EQ(driver->events(), Lines{"e"});
    EXPECT_EQ(driver->errors(), Lines{"f"});
    EXPECT_EQ(driver->warnings(), Lines{"w"});
    EXPECT_EQ(driver->finished_ids(), std::set<long>{1});
}

TEST_F(EventsTest, ANotifyThatSucceedsDropsItsTrace) {
    open();
    notifier.on_notify = [] { _MErrTrace_Add("%s", "of no interest"); };
    script.fire_async("e");
    EXPECT_EQ(new_log_lines(), Lines());
}

TEST_F(EventsTest, TheHostMayCallBackFromNotify) {
    open();
    notifier.on_notify = [this] { driver->PollAsyncErrors(); };
    script.fire_async("e");
    script.fire_error(0, "f");
    script.fire_warning(0, "w");
    script.fire_complete(3);
    EXPECT_EQ(take_channel(), "0000\tevent \"e\"\r\n0000\terror \"f\"\r\n0000\twarning \"w\"\r\n");
    expect_nothing_queued();
}

TEST_F(EventsTest, CapabilitiesChangedRenewsAllInOrder) {
    answers.command_words = {"init list", "spin list", "keypad list"};
    driver->m_cachedAxes.add("x");
    open();
    driver->m_keypadList.dirty = false;
    driver->m_keypadActiveList.dirty = false;
    script.fire_async("capabilities changed");
    EXPECT_EQ(script.take_calls(), (Lines{"CommandSet(null)", "Capabilities(0)", "KeyPadList(1)",
                                          "SpinList()", "SpinActive()", "InitList()", "Get({x=0 flag -1})"}));
    EXPECT_TRUE(driver->m_keypadList.dirty);
    EXPECT_FALSE(driver->m_keypadActiveList.dirty);
    EXPECT_EQ(driver->events(), Lines{"capabilities changed"});
    EXPECT_EQ(notifier.count, 1);
}

TEST_F(EventsTest, AnEventIsActedUponBeforeItIsQueued) {
    open();
    answers.capabilities["new"].name = "new";
    bool queued_before = true;
    script.on_call("Capabilities", [&] { queued_before = !driver->events().empty(); });
    bool known = false;
    notifier.on_notify = [&] { known = driver->GetAxisInfo("new") != nullptr; };
    script.fire_async("capabilities changed");
    EXPECT_FALSE(queued_before);
    EXPECT_TRUE(known);
}

TEST_F(EventsTest, KeypadEventsMarkTheActiveListOnly) {
    open();
    for (const char* text : {"keypad: enabled", "keypad: disabled", "keypad: changed"}) {
        driver->m_keypadList.dirty = false;
        driver->m_keypadActiveList.dirty = false;
        script.fire_async(text);
        EXPECT_TRUE(driver->m_keypadActiveList.dirty) << text;
        EXPECT_FALSE(driver->m_keypadList.dirty) << text;
    }
    EXPECT_TRUE(script.take_calls().empty());
}

TEST_F(EventsTest, OtherTextsChangeNothing) {
    answers.command_words = {"spin list"};
    open();
    driver->m_keypadList.dirty = false;
    driver->m_keypadActiveList.dirty = false;
    const Lines texts = {"Keypad: enabled",
                         "keypad: enabled ",
                         "keypad:enabled",
                         "capabilities changed ",
                         "spin: Changed",
                         "machine changed",
                         "",
                         "movement: end"};
    for (const std::string& text : texts) script.fire_async(text);
    EXPECT_TRUE(script.take_calls().empty());
    EXPECT_FALSE(driver->m_keypadList.dirty);
    EXPECT_FALSE(driver->m_keypadActiveList.dirty);
    EXPECT_EQ(driver->events(), texts);
}

TEST_F(EventsTest, SpinChangedRenewsTheSpinLists) {
    answers.command_words = {"spin list"};
    open();
    answers.spin_list = {"a"};
    script.fire_async("spin: changed");
    EXPECT_EQ(script.take_calls(), (Lines{"SpinList()", "SpinActive()"}));
    EXPECT_EQ(driver->spin_list(), std::set<std::string>{"a"});
}

TEST_F(EventsTest, AnErrorInTheRefreshLeavesTheCallback) {
    open();
    script.throw_error("Capabilities", "gone");
    EXPECT_THROW(script.fire_async("capabilities changed"), CZendrixError);
    EXPECT_EQ(driver->events(), Lines());
    EXPECT_EQ(notifier.count, 0);
}

TEST_F(EventsTest, AnErrorWithoutAnIdIsNeverLate) {
    open();
    script.fire_error(0, "aborted");
    script.fire_error(0, "cable");
    EXPECT_EQ(new_log_lines(), Lines());
    EXPECT_EQ(driver->errors(), (Lines{"aborted", "cable"}));
    EXPECT_EQ(notifier.count, 2);
}

TEST_F(EventsTest, ALateErrorIsLoggedAndQueued) {
    open();
    script.fire_error(17, "cable");
    EXPECT_EQ(new_log_lines(),
              Lines{"M2ZendrixMachAbstract::async_errors_callback(): error \"cable\" for tid "
                    "17 arrived after \"ready\""});
    EXPECT_EQ(driver->errors(), Lines{"cable"});
    EXPECT_EQ(notifier.count, 1);
}

TEST_F(EventsTest, ALateAbortIsLoggedAndGoesNoFurther) {
    driver->m_cachedAxes.add("x");
    open();
    script.fire_error(17, "aborted");
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::async_errors_callback(): error \"aborted\" for "
                                     "tid 17 arrived after \"ready\""});
    expect_nothing_queued();
    EXPECT_EQ(notifier.count, 0);
    EXPECT_EQ(script.take_calls(), Lines{"Get({x=0 flag -1})"}) << "the cached axes are refreshed first";
    script.fire_error(17, "aborted ");
    EXPECT_EQ(new_log_lines().size(), 1U);
    EXPECT_EQ(driver->errors(), Lines{"aborted "});
}

TEST_F(EventsTest, ErrorsRefreshTheCachedAxesWarningsDoNot) {
    driver->m_cachedAxes.add("x");
    open();
    script.fire_error(0, "f");
    EXPECT_EQ(script.take_calls(), Lines{"Get({x=0 flag -1})"});
    script.fire_warning(0, "w");
    script.fire_async("e");
    EXPECT_TRUE(script.take_calls().empty());
}

TEST_F(EventsTest, ALateWarningIsLoggedAndStillQueued) {
    open();
    script.fire_warning(0, "first");
    script.fire_warning(4, "aborted");
    EXPECT_EQ(new_log_lines(), Lines{"M2ZendrixMachAbstract::async_warnings_callback(): warning \"aborted\" "
                                     "for tid 4 arrived after \"ready\""});
    EXPECT_EQ(driver->warnings(), (Lines{"first", "aborted"}));
    EXPECT_EQ(notifier.count, 2);
}

TEST_F(EventsTest, TheIgnoredErrorVanishesBetweenBeginAndEnd) {
    driver->m_cachedAxes.add("x");
    open();
    driver->begin_ignore_not_loaded_error();
    script.fire_error(0, "probesystem not loaded");
    script.fire_error(8, "probesystem not loaded");
    EXPECT_EQ(new_log_lines(), Lines());
    expect_nothing_queued();
    EXPECT_EQ(notifier.count, 0);
    EXPECT_TRUE(script.take_calls().empty());
    script.fire_error(0, "probesystem not loaded.");
    script.fire_error(0, "error \"probesystem not loaded\"");
    EXPECT_EQ(driver->errors().size(), 2U) << "only the whole bare text is ignored";
    driver->end_ignore_not_loaded_error();
    script.fire_error(0, "probesystem not loaded");
    EXPECT_EQ(driver->errors().back(), "probesystem not loaded");
    EXPECT_EQ(driver->errors().size(), 3U);
}

TEST_F(EventsTest, OverlappingIgnoresDoNotNest) {
    open();
    driver->begin_ignore_not_loaded_error();
    driver->begin_ignore_not_loaded_error();
    driver->end_ignore_not_loaded_error();
    script.fire_error(0, "probesystem not loaded");
    EXPECT_EQ(driver->errors(), Lines{"probesystem not loaded"});
    driver->end_ignore_not_loaded_error();
}

TEST_F(EventsTest, WarningsKnowNoIgnoredTexts) {
    open();
    driver->begin_ignore_not_loaded_error();
    script.fire_warning(0, "probesystem not loaded");
    EXPECT_EQ(driver->warnings(), Lines{"probesystem not loaded"});
    driver->end_ignore_not_loaded_error();
}

using Records = std::vector<std::vector<double>>;

class AutoinfoTest : public EventsTest {
protected:
    void fire(std::vector<double> values) {
        OpenDriver::autoinfo_callback(driver.get(), static_cast<unsigned>(values.size()), values.data());
    }
};

TEST_F(AutoinfoTest, WithoutAxesOrValuesNothingHappens) {
    fire({1.0, 2.0});
    driver->watch({"x"});
    fire({});
    EXPECT_EQ(driver->autoinfo(), Records());
    EXPECT_EQ(notifier.count, 0);
}

TEST_F(AutoinfoTest, OneCallCanBringSeveralRecords) {
    driver->watch({"x", "y", "z"});
    fire({1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_EQ(driver->autoinfo(), (Records{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}));
    EXPECT_EQ(notifier.count, 1);
}

TEST_F(AutoinfoTest, NoValueIsReadBehindTheLast) {
    driver->watch({"x", "y"});
    fire({1, 2, 3});
    EXPECT_EQ(driver->autoinfo(), (Records{{1, 2}}));
}

class WaitingCommandTest : public EventsTest {
protected:
    Lines reply = {"as it was"};
};

TEST_F(WaitingCommandTest, WithoutAClientNothingHappens) {
    execute_cmd_and_wait(nullptr, "moveaxis x ", reply);
    EXPECT_EQ(reply, Lines{"as it was"});
    EXPECT_TRUE(script.calls().empty());
}

TEST_F(WaitingCommandTest, RunsInTheWaitingModeAndPutsTheModeBack) {
    open();
    answers.execute_reply = {"1"};
    for (const SyncType mode : {ZX_ASYNC, ZX_SYNC}) {
        driver->client()->SetSync3(mode);
        script.take_calls();
        execute_cmd_and_wait(driver->client(), "moveaxis x ", reply);
        EXPECT_EQ(reply, Lines{"1"});
        EXPECT_EQ(script.take_calls(), (Lines{"GetSync3()", "SetSync3(1)", "Execute(\"moveaxis x \", null)",
                                              "SetSync3(" + std::to_string(static_cast<int>(mode)) + ")"}));
        EXPECT_EQ(script.slots().mode, mode);
    }
}

TEST_F(WaitingCommandTest, AFalseAnswerIsNotLookedAt) {
    open();
    script.answer_false("Execute");
    execute_cmd_and_wait(driver->client(), "moveaxis x ", reply);
    EXPECT_EQ(reply, Lines{"as it was"});
    EXPECT_EQ(script.slots().mode, ZX_ASYNC);
}

TEST_F(WaitingCommandTest, TheModeComesBackAfterAnException) {
    open();
    script.throw_error("Execute", "no such axis", 1);
    execute_cmd_and_wait(driver->client(), "moveaxis q ", reply);
    EXPECT_EQ(new_log_lines(), Lines{"execute_cmd_and_wait(): Execute(moveaxis q ) failed: no such axis"});
    EXPECT_EQ(script.slots().mode, ZX_ASYNC);
    script.throw_foreign("Execute");
    EXPECT_THROW(execute_cmd_and_wait(driver->client(), "moveaxis q ", reply), scripted::Foreign);
    EXPECT_EQ(script.slots().mode, ZX_ASYNC);
}

}  // namespace
