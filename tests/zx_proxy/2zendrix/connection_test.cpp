// Open, Close, and what a lost connection looks like.
#include "driver_fixture.h"
#include "os/socket.h"

namespace {

const std::string delays_warning =
    "M2ZendrixMachAbstract::Open(): TCP are delays enabled. Expect additional latencies. Please update "
    "registry!";

class ConnectionTest : public DriverTest {
protected:
    ConnectionTest() { script.name_user(driver.get(), "driver"); }

    std::vector<MMachCommand*> made_by_factories() {
        MOutputChannel& c = channel;
        return {driver->NewMMachGetCommand(&c, {}),       driver->NewMMachInitCommand(&c, {}),
                driver->NewMMachModuloCommand(&c, {}),    driver->NewMMachMovebaseCommand(&c, {}),
                driver->NewMMachMoveCommand(&c, {}),      driver->NewMMachMovecircleCommand(&c, {}),
                driver->NewMMachMoveconeCommand(&c, {}),  driver->NewMMachMovehomeCommand(&c),
                driver->NewMMachMovezeroCommand(&c, {}),  driver->NewMMachSetCommand(&c, {}),
                driver->NewMMachScanCommand(&c, {}),      driver->NewMMachResetCommand(&c),
                driver->NewMMachScanbaseCommand(&c, {}),  driver->NewMMachScancircleCommand(&c, {}),
                driver->NewMMachScanconeCommand(&c, {}),  driver->NewMMachScandataCommand(&c, {}),
                driver->NewMMachScanpointCommand(&c, {}), driver->NewMMachMovepolyCommand(&c, {}),
                driver->NewMMachScanpolyCommand(&c, {})};
    }

    void expect_no_machine() {
        EXPECT_EQ(driver->client(), nullptr);
        for (MMachCommand* command : made_by_factories()) EXPECT_EQ(command, nullptr);
        EXPECT_EQ(channel.get_text(), "");
        EXPECT_TRUE(script.take_calls().empty());
    }
};

TEST_F(ConnectionTest, ConstructionTouchesNothing) {
    EXPECT_TRUE(script.calls().empty());
    EXPECT_EQ(driver->m_host, "192.168.2.10");
    EXPECT_EQ(driver->m_port, "7073");
    EXPECT_TRUE(driver->m_keypadList.dirty);
    EXPECT_TRUE(driver->m_keypadActiveList.dirty);
    expect_no_machine();
}

TEST_F(ConnectionTest, OpenGoesThroughItsStepsInOrder) {
    answers.command_words = {"init list", "spin list", "keypad list"};
    driver->m_cachedAxes.add("x");
    ASSERT_TRUE(driver->Open());
    EXPECT_EQ(script.take_calls(), (Lines{
                                       "CZendrixCOM(null, null, \"192.168.2.10 7073\", null)",
                                       "ThrowExceptions(1)",
                                       "HasConnection()",
                                       "SetSync3(0)",
                                       "Master()",
                                       "SetAsyncCallback(f1, driver)",
                                       "SetErrorMsgCallback(f2, driver)",
                                       "SetWarningMsgCallback(f3, driver)",
                                       "SetCommandCompleteCallback(f4, driver)",
                                       "GetMajorRevision()",
                                       "GetMinorRevision()",
                                       "CommandSet(null)",
                                       "Capabilities(0)",
                                       "KeyPadList(1)",
                                       "InitList()",
                                       "SpinList()",
                                       "SpinActive()",
                                       "Get({x=0 flag -1})",
                                   }));
    EXPECT_EQ(notifier.count, 0);
    EXPECT_EQ(channel.get_text(), "");
}

TEST_F(ConnectionTest, EachCallbackHasItsSlot) {
    open();
    EXPECT_TRUE(script.fire_async("e"));
    EXPECT_TRUE(script.fire_error(0, "f"));
    EXPECT_TRUE(script.fire_warning(0, "w"));
    EXPECT_TRUE(script.fire_complete(7));
    EXPECT_FALSE(script.fire_watch({1.0}));
    EXPECT_EQ(driver->events(), Lines{"e"});
    EXPECT_EQ(driver->errors(), Lines{"f"});
    EXPECT_EQ(driver->warnings(), Lines{"w"});
    EXPECT_EQ(driver->finished_ids(), std::set<long>{7});
}

TEST_F(ConnectionTest, ALibraryOrSerialLineIsNamedWithoutItsPort) {
    for (const std::string host : {"C:\\a b\\sim.dll", "COM3", "myCOMputer", "x.dll.old"}) {
        driver->m_host = host;
        ASSERT_TRUE(driver->Open());
        EXPECT_EQ(script.take_calls().front(), "CZendrixCOM(null, null, \"" + host + "\", null)");
        driver->Close();
        script.take_calls();
    }
    EXPECT_TRUE(registry.calls.empty()) << "no adapter is looked at";
    for (const std::string host : {"com3", "sim.DLL", "10.0.0.1"}) {
        driver->m_host = host;
        driver->m_port = "99";
        ASSERT_TRUE(driver->Open());
        EXPECT_EQ(script.take_calls().front(), "CZendrixCOM(null, null, \"" + host + " 99\", null)");
        driver->Close();
        script.take_calls();
    }
    EXPECT_EQ(
        new_log_lines(),
        (Lines{"CTcpIpSpeeder::GetNwAdapterForIp: MakeTargetIPAddress() failed for com3", delays_warning,
               "CTcpIpSpeeder::GetNwAdapterForIp: MakeTargetIPAddress() failed for sim.DLL",
               delays_warning}));
}

TEST_F(ConnectionTest, ASlowAdapterIsWorthAWarningAndNoMore) {
    registry.adapters[0].values.erase("TcpAckFrequency");
    script.on_call("CZendrixCOM", [&] { EXPECT_TRUE(registry.calls.empty()) << "the client comes first"; });
    EXPECT_TRUE(driver->Open());
    EXPECT_EQ(new_log_lines(), Lines{delays_warning});
    EXPECT_EQ(script.take_calls()[1], "ThrowExceptions(1)");
    EXPECT_EQ(registry.open_keys(), 0U);
    driver->Close();
    registry.calls.clear();
    driver->m_host = "localhost";
    EXPECT_TRUE(driver->Open());
}

TEST_F(ConnectionTest, TheAdapterOfTheConfiguredHostIsLookedAt) {
    registry.adapters.clear();
    registry.add("other", "172.16.0.1", "255.255.0.0").values["TcpAckFrequency"] = MemoryRegistry::dword(1);
    EXPECT_TRUE(driver->Open());
    EXPECT_EQ(new_log_lines(), Lines{delays_warning});
    driver->Close();
    driver->m_host = "172.16.3.4";
    EXPECT_TRUE(driver->Open());
}

TEST_F(ConnectionTest, ARefusedConnectionAsksNothingOfTheAdapter) {
    script.throw_error("CZendrixCOM", "refused");
    EXPECT_FALSE(driver->Open());
    EXPECT_EQ(new_log_lines().size(), 2U);
    EXPECT_TRUE(registry.calls.empty());
}

// Where the loopback address has an adapter, our client doesn't delay acknowledgements on it.
TEST_F(ConnectionTest, OverTheLoopbackAddressTheSystemIsAsked) {
    driver->m_registry = &os::system_registry();
    driver->m_host = "127.0.0.1";
    EXPECT_TRUE(driver->Open());
    const Lines lines = new_log_lines();  // a system without adapters tells that, too
    EXPECT_EQ(lines.empty() ? "" : lines.back(), os::socket_can_acknowledge() ? "" : delays_warning);
}

struct Revision {
    long major;
    long minor;
    bool supported;
};

TEST_F(ConnectionTest, TheKeypadListOfInactiveAxesComesWithRevision2_2) {
    recording::set_trace_level(5);
    for (const Revision& revision : {Revision{1, 9, false}, Revision{2, 1, false}, Revision{2, 2, true},
                                     Revision{2, 3, true}, Revision{3, 0, true}}) {
        make_driver("none", "none");
        answers.major_revision = revision.major;
        answers.minor_revision = revision.minor;
        ASSERT_TRUE(driver->Open());
        EXPECT_EQ(driver->m_keypadListInactive, revision.supported)
            << revision.major << '.' << revision.minor;
        EXPECT_EQ(trace_texts().back(),
                  std::string("M2ZendrixMachAbstract::Open(): machine scripted machine ") +
                      (revision.supported ? "supports" : "does not support") + " \"keypad list +inactive\"");
    }
}

TEST_F(ConnectionTest, TheMachineNameIsAskedOnlyForTheTrace) {
    recording::set_trace_level(4);
    ASSERT_TRUE(driver->Open());
    EXPECT_TRUE(script.calls_of("GetMachineName").empty());
    driver->Close();
    recording::set_trace_level(5);
    ASSERT_TRUE(driver->Open());
    EXPECT_EQ(script.calls_of("GetMachineName").size(), 1U);
}

TEST_F(ConnectionTest, FlagsStayRaisedThroughANewOpen) {
    answers.command_words = {"keypad list"};
    open();
    driver->Close();
    answers.command_words = {};
    answers.major_revision = 1;
    open();
    EXPECT_TRUE(driver->HasKeypad());
    EXPECT_TRUE(driver->m_keypadListInactive);
}

// Each step of Open that can fail, by false and by the client's error.
struct FailingStep {
    const char* operation;
    const char* text_on_false;  // null: a false answer isn't looked at
};

const FailingStep steps[] = {
    {"CZendrixCOM", nullptr},
    {"ThrowExceptions", nullptr},
    {"HasConnection", "inst_zx:client(): no machine connection"},
    {"SetSync3", "Open(): failed to set sync mode"},
    {"Master", "Open(): failed to enable asynchronous events"},
    {"SetAsyncCallback", nullptr},
    {"SetErrorMsgCallback", nullptr},
    {"SetWarningMsgCallback", nullptr},
    {"SetCommandCompleteCallback", nullptr},
};

class FailingOpenTest : public ConnectionTest, public testing::WithParamInterface<FailingStep> {
protected:
    void expect_closed_and_reopens() {
        EXPECT_TRUE(script.clients().empty());
        script.take_calls();
        expect_no_machine();
        driver->PollAsyncErrors();
        EXPECT_EQ(channel.get_text(), "");
        script.succeed(GetParam().operation);
        EXPECT_TRUE(driver->Open());
    }
};

TEST_P(FailingOpenTest, ByFalse) {
    if (std::string(GetParam().operation) == "CZendrixCOM") return;  // a constructor has no answer
    script.answer_false(GetParam().operation);
    if (!GetParam().text_on_false) {
        EXPECT_TRUE(driver->Open());
        return;
    }
    EXPECT_FALSE(driver->Open());
    EXPECT_EQ(new_log_lines(), Lines{GetParam().text_on_false});
    expect_closed_and_reopens();
}

TEST_P(FailingOpenTest, ByTheClientsError) {
    script.throw_error(GetParam().operation, "no way");
    EXPECT_FALSE(driver->Open());
    EXPECT_EQ(new_log_lines(),
              (Lines{"  error 'no way'\n", "instantiating ZendrixCOM client object ...... failed.\n"}));
    EXPECT_EQ(script.calls().back().substr(0, script.calls().back().find('(')),
              std::string(GetParam().operation) == "CZendrixCOM" ? "CZendrixCOM" : "~CZendrixCOM");
    expect_closed_and_reopens();
}

TEST_P(FailingOpenTest, AForeignExceptionReachesTheHost) {
    script.throw_foreign(GetParam().operation);
    EXPECT_THROW(driver->Open(), scripted::Foreign);
    script.succeed(GetParam().operation);
    driver->Close();
    EXPECT_TRUE(script.clients().empty());
    EXPECT_TRUE(driver->Open());
}

INSTANTIATE_TEST_SUITE_P(Steps, FailingOpenTest, testing::ValuesIn(steps),
                         [](const auto& step) { return step.param.operation; });

TEST_F(ConnectionTest, WithoutAConnectionNothingMoreIsAsked) {
    answers.connected = false;
    EXPECT_FALSE(driver->Open());
    EXPECT_EQ(new_log_lines(), Lines{"inst_zx:client(): no machine connection"});
    EXPECT_EQ(script.take_calls(), (Lines{"CZendrixCOM(null, null, \"192.168.2.10 7073\", null)",
                                          "ThrowExceptions(1)", "HasConnection()", "~CZendrixCOM()"}));
}

// What the steps after the callbacks don't catch reaches the host, and the client stays.
TEST_F(ConnectionTest, ErrorsOfTheFirstQueriesPassThroughOpen) {
    answers.command_words = {"init list", "spin list", "keypad list"};
    for (const std::string operation : {"GetMajorRevision", "GetMinorRevision", "Capabilities", "KeyPadList",
                                        "InitList", "SpinList", "SpinActive"}) {
        script.throw_error(operation, "gone");
        EXPECT_THROW(driver->Open(), CZendrixError) << operation;
        EXPECT_NE(driver->client(), nullptr);
        script.succeed(operation);
        driver->Close();
    }
}

TEST_F(ConnectionTest, AFailingCommandSetOrGetDoesNotStopOpen) {
    driver->m_cachedAxes.add("x");
    script.throw_error("CommandSet", "gone");
    script.throw_error("Get", "gone");
    EXPECT_TRUE(driver->Open());
    EXPECT_EQ(new_log_lines(),
              (Lines{"M2ZendrixMachAbstract::enable_supported_commands(): CommandSet() failed: 'gone'",
                     "M2ZendrixMachAbstract::update_cached_axes_values(): Get() failed: gone"}));
}

TEST_F(ConnectionTest, ASecondOpenOverwritesTheClient) {
    open();
    CZendrixCOM* const first = driver->client();
    open();
    EXPECT_NE(driver->client(), first);
    EXPECT_EQ(script.clients().size(), 2U);
    delete first;
}

TEST_F(ConnectionTest, ASecondOpenThatFailsDeletesTheClientThatIsThere) {
    open();
    script.throw_error("CZendrixCOM", "refused");
    EXPECT_FALSE(driver->Open());
    EXPECT_EQ(new_log_lines().size(), 2U);
    EXPECT_TRUE(script.clients().empty());
    EXPECT_EQ(driver->client(), nullptr);
}

TEST_F(ConnectionTest, CloseDoesNothingWithoutAClientHoweverOften) {
    driver->Close();
    driver->Close();
    EXPECT_TRUE(script.calls().empty());
    open();
    driver->Close();
    driver->Close();
    EXPECT_EQ(script.take_calls(), Lines{"~CZendrixCOM()"});
    expect_no_machine();
}

TEST_F(ConnectionTest, CloseLeavesQueuesAndIds) {
    open();
    script.fire_async("one");
    script.fire_complete(3);
    driver->Close();
    EXPECT_EQ(driver->events(), Lines{"one"});
    EXPECT_EQ(driver->finished_ids(), std::set<long>{3});
    EXPECT_TRUE(driver->take_finished_id(3));
    EXPECT_FALSE(driver->take_finished_id(3));
}

TEST_F(ConnectionTest, TheDestructorFreesBothClients) {
    open();
    driver->m_pZendrixComRetired = new CZendrixCOM(nullptr, nullptr, "old", nullptr);
    script.take_calls();
    driver.reset();
    EXPECT_EQ(script.take_calls(), (Lines{"~CZendrixCOM()", "~CZendrixCOM()"}));
    EXPECT_EQ(channel.get_text(), "");
    EXPECT_EQ(notifier.count, 0);
}

TEST_F(ConnectionTest, TheRetiredClientGoesFirst) {
    open();
    CZendrixCOM* const live = driver->client();
    driver->m_pZendrixComRetired = new CZendrixCOM(nullptr, nullptr, "old", nullptr);
    std::vector<std::vector<CZendrixCOM*>> left;
    script.on_call("~CZendrixCOM", [&] { left.push_back(script.clients()); });
    driver->Close();
    EXPECT_EQ(left, (std::vector<std::vector<CZendrixCOM*>>{{live}, {}}));
}

TEST_F(ConnectionTest, PollHandsOnErrorsThenWarningsThenEvents) {
    open();
    script.fire_async("e1");
    script.fire_warning(0, "w1");
    script.fire_error(0, "f1");
    script.fire_error(0, "f2");
    script.fire_async("e2");
    script.fire_warning(0, "w2");
    EXPECT_EQ(take_channel(), "");
    driver->PollAsyncErrors();
    EXPECT_EQ(take_channel(),
              "0000\terror \"f1\"\r\n0000\terror \"f2\"\r\n0000\twarning \"w1\"\r\n0000\twarning \"w2\"\r\n"
              "0000\tevent \"e1\"\r\n0000\tevent \"e2\"\r\n");
    driver->PollAsyncErrors();
    EXPECT_EQ(take_channel(), "");
}

TEST_F(ConnectionTest, PollEmptiesTheQueuesWithoutAClientToo) {
    open();
    script.fire_async("e");
    script.fire_error(0, "f");
    driver->Close();
    script.take_calls();
    driver->PollAsyncErrors();
    EXPECT_EQ(take_channel(), "0000\terror \"f\"\r\n0000\tevent \"e\"\r\n");
    EXPECT_TRUE(script.take_calls().empty());
}

TEST_F(ConnectionTest, AnUnexpectedLossIsFatalOnce) {
    open();
    answers.connected = false;
    for (int i = 0; i < 3; ++i) driver->PollAsyncErrors();
    EXPECT_TRUE(channel.is_fatal());
    EXPECT_NE(driver->client(), nullptr);
    EXPECT_EQ(take_channel(), "0000\terror \"fatal: machine connection lost\"\r\n");
    channel.clear();
    driver->PollAsyncErrors();
    EXPECT_EQ(take_channel(), "");
    // The queues go on.
    script.fire_async("late");
    driver->PollAsyncErrors();
    EXPECT_EQ(take_channel(), "0000\tevent \"late\"\r\n");
}

TEST_F(ConnectionTest, APendingErrorTakesThePlaceOfTheFatalText) {
    open();
    script.fire_error(0, "cable");
    answers.connected = false;
    driver->PollAsyncErrors();
    EXPECT_TRUE(channel.is_fatal());
    EXPECT_EQ(take_channel(), "0000\terror \"cable\"\r\n");
}

TEST_F(ConnectionTest, TheFatalTextStandsBetweenErrorsAndWarnings) {
    open();
    script.fire_warning(0, "w");
    answers.connected = false;
    driver->PollAsyncErrors();
    EXPECT_EQ(take_channel(), "0000\terror \"fatal: machine connection lost\"\r\n0000\twarning \"w\"\r\n");
}

TEST_F(ConnectionTest, AnExpectedLossRetiresTheClient) {
    recording::set_trace_level(3);
    open();
    CZendrixCOM* const client = driver->client();
    driver->m_expectConnectionLoss = true;
    driver->PollAsyncErrors();
    EXPECT_EQ(driver->client(), client) << "there is no loss yet";
    answers.connected = false;
    driver->PollAsyncErrors();
    driver->PollAsyncErrors();
    EXPECT_EQ(trace_texts(), Lines{"M2ZendrixMachAbstract::PollAsyncErrors(): expected connection break: "
                                   "closing the connection"});
    EXPECT_EQ(driver->m_pZendrixComRetired, client);
    EXPECT_EQ(script.clients().size(), 1U) << "a poll never deletes a client";
    EXPECT_FALSE(channel.is_fatal());
    script.take_calls();
    expect_no_machine();
}

TEST_F(ConnectionTest, ARetiredClientsLateCallbacksFindNoMachine) {
    driver->m_cachedAxes.add("x");
    open();
    driver->m_expectConnectionLoss = true;
    answers.connected = false;
    driver->PollAsyncErrors();
    script.take_calls();
    script.fire_complete(5);
    script.fire_async("capabilities changed");
    script.fire_error(0, "f");
    EXPECT_TRUE(script.take_calls().empty());
    EXPECT_EQ(notifier.count, 3);
    EXPECT_EQ(driver->finished_ids(), std::set<long>{5});
}

TEST_F(ConnectionTest, AReopenedDriverKeepsItsRetiredClientUntilClose) {
    open();
    CZendrixCOM* const old = driver->client();
    driver->m_expectConnectionLoss = true;
    answers.connected = false;
    driver->PollAsyncErrors();
    answers.connected = true;
    open();
    EXPECT_EQ(driver->m_pZendrixComRetired, old);
    EXPECT_EQ(script.clients().size(), 2U);
    // A failed Open leaves it alone as well.
    script.throw_error("CZendrixCOM", "refused");
    EXPECT_FALSE(driver->Open());
    EXPECT_EQ(new_log_lines().size(), 2U);
    EXPECT_EQ(driver->m_pZendrixComRetired, old);
    driver->Close();
    EXPECT_EQ(driver->m_pZendrixComRetired, nullptr);
    EXPECT_TRUE(script.clients().empty());
}

TEST_F(ConnectionTest, ASecondExpectedLossIsExpectedTooAndLosesNoClient) {
    driver->m_expectConnectionLoss = true;
    for (int i = 0; i < 3; ++i) {
        answers.connected = true;
        open();
        answers.connected = false;
        driver->PollAsyncErrors();
        EXPECT_EQ(driver->client(), nullptr);
    }
    EXPECT_FALSE(channel.is_fatal());
    EXPECT_EQ(script.clients().size(), 3U);
    driver->Close();
    EXPECT_TRUE(script.clients().empty());
}

TEST_F(ConnectionTest, ATextThatTheChannelRefusesStaysInTheQueue) {
    struct Refusing : MOutputChannel {
        using MOutputChannel::error;
        using MOutputChannel::MOutputChannel;
        void error(const std::string& text) override {
            if (refuse) throw scripted::Foreign();
            MOutputChannel::error(text);
        }
        bool refuse = true;
    } refusing(0);
    driver = std::make_unique<OpenDriver>(&refusing, &notifier, "none", "none");
    driver->m_registry = &registry;
    open();
    script.fire_error(0, "f");
    EXPECT_THROW(driver->PollAsyncErrors(), scripted::Foreign);
    EXPECT_EQ(driver->errors(), Lines{"f"});
    refusing.refuse = false;
    driver->PollAsyncErrors();
    EXPECT_EQ(refusing.get_text(), "0000\terror \"f\"\r\n");
    refusing.clear();
    driver.reset();
}

}  // namespace
