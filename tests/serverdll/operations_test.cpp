// Each operation sends the line of the reference and reads its answer.
#include "clientfixture.h"

namespace {

using test::ClientFixture;
using test::Peer;
using Names = std::vector<std::string>;

struct Row {
    const char* words;
    std::vector<std::string> answer;
    std::function<bool(CZendrixCOM&)> call;
};

Names some_axes() { return {"x", "a \"b\""}; }

std::vector<Position> some_targets() {
    return {{"x", 12.5, -1}, {"y", -1.0, 0}, {"z", 3.0, 1}, {"a", 0.0, 2}, {"b", 0.0, 3}};
}

const char* const some_targets_text = R"( "x"=12.5 "y"+=-1 "z" "a"=min "b"=max)";

std::vector<Row> query_rows() {
    return {
        {"master", {"ready"}, [](CZendrixCOM& c) { return c.Master(); }},
        {"machine get", {"ready"}, [](CZendrixCOM& c) { return c.GetMachine(false); }},
        {"machine get now", {"ready"}, [](CZendrixCOM& c) { return c.GetMachine(true); }},
        {"machine release", {"ready"}, [](CZendrixCOM& c) { return c.ReleaseMachine(false); }},
        {"abort 17", {"ready"}, [](CZendrixCOM& c) { return c.Abort(17); }},
        {"machine name",
         {"data \"Round \\\"4\\\"\"", "ready"},
         [](CZendrixCOM& c) { return c.GetMachineName() == "Round \"4\""; }},
        {"machine revision",
         {"data \"1.7\"", "ready"},
         [](CZendrixCOM& c) { return c.GetMachineRevision() == "1.7"; }},
        {"machine serial",
         {"data \"\"", "ready"},
         [](CZendrixCOM& c) { return c.GetSerialNumber().empty(); }},
        {"components",
         {"data \"core\" \"1.0\"", "data \"probe\" \"2.0 b\"", "ready"},
         [](CZendrixCOM& c) {
             return c.GetComponentsMap() ==
                    std::map<std::string, std::string>{{"core", "1.0"}, {"probe", "2.0 b"}};
         }},
        {"options", {"ready"}, [](CZendrixCOM& c) { return c.GetOptionsMap().empty(); }},
        {"commands",
         {"data \"move\"", "data \"keypad enable\"", "ready"},
         [](CZendrixCOM& c) {
             Names words = {"old"};
             return c.CommandSet(words, nullptr) && words == Names{"move", "keypad enable"};
         }},
        {"commands",
         {"data \"move\"", "data \"keypad enable\"", "ready"},
         [](CZendrixCOM& c) {
             Names words;
             return c.CommandSet(words, "key") && words == Names{"keypad enable"};
         }},
        {"capabilities",
         {"data \"x\" 0 1 2 3 4 5 0.5", "data \"probe\" 3 0 8 0 0 0 0 1 2.5", "ready"},
         [](CZendrixCOM& c) {
             std::map<std::string, CAxis> axes = {{"old", {}}};
             return c.Capabilities(axes, false) && axes.size() == 2 && axes["x"].number5 == 5 &&
                    axes["x"].step == 0.5 && axes["x"].values.empty() && axes["probe"].kind == 3 &&
                    axes["probe"].number2 == 8 && axes["probe"].values == std::vector<double>{1, 2.5} &&
                    axes["probe"].name == "probe";
         }},
        {"capabilities all",
         {"ready"},
         [](CZendrixCOM& c) {
             std::map<std::string, CAxis> axes = {{"old", {}}};
             return c.Capabilities(axes, true) && axes.empty();
         }},
        {"init list",
         {"data \"x\"", "data \"y y\"", "ready"},
         [](CZendrixCOM& c) {
             Names axes = {"old"};
             return c.InitList(axes) && axes == Names{"x", "y y"};
         }},
        {"init active",
         {"ready"},
         [](CZendrixCOM& c) {
             return Names() == [&] {
                 Names a;
                 c.InitActive(a);
                 return a;
             }();
         }},
        {"keypad list",
         {"data \"x\"", "ready"},
         [](CZendrixCOM& c) {
             Names a;
             return c.KeyPadList(a, false) && a == Names{"x"};
         }},
        {"keypad list +inactive",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a;
             return c.KeyPadList(a, true);
         }},
        {"keypad active",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a;
             return c.KeyPadActive(a);
         }},
        {"spin list",
         {"data \"c\"", "ready"},
         [](CZendrixCOM& c) {
             Names a;
             return c.SpinList(a) && a == Names{"c"};
         }},
        {"spin active",
         {"data \"-c\" 12.5", "data \"+d\" 1", "ready"},
         [](CZendrixCOM& c) {
             Names axes;
             std::vector<double> values;
             return c.SpinActive(axes, values) && axes == Names{"-c", "+d"} &&
                    values == std::vector<double>{12.5, 1};
         }},
        {"get \"x\"",
         {"data 12.345678", "ready"},
         [](CZendrixCOM& c) {
             double value = 0.0;
             return c.Get("x", &value) && value == 12.345678;
         }},
        {"get \"x\" \"init\"",
         {"data -1 1", "ready"},
         [](CZendrixCOM& c) {
             std::vector<Position> positions = {{"x", 0.0, -1}, {"init", 0.0, -1}};
             return c.Get(positions) && positions[0].value == -1.0 && positions[1].value == 1.0;
         }},
        {"scanaxis \"x\" \"y\"",
         {"data 1", "ready"},
         [](CZendrixCOM& c) {
             const char* axes[] = {"x", "y"};
             return c.ScanAxis(2, axes);
         }},
        {"scanaxis \"x\" \"c\"",
         {"data 0", "ready"},
         [](CZendrixCOM& c) {
             const char* axes[] = {"x", "c"};
             return !c.ScanAxis(2, axes);
         }},
        {"wobble get",
         {"data 1 2 3 4 5 6", "ready"},
         [](CZendrixCOM& c) {
             double p[6] = {};
             return c.GetWobble(p, p + 1, p + 2, p + 3, p + 4, p + 5) && p[0] == 1 && p[5] == 6;
         }},
        {"watch -1 50 \"x\" \"a \\\"b\\\"\"",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a = some_axes();
             return c.WatchAxisRT(-1, 50, a);
         }},
        {"watch 0 0", {"ready"}, [](CZendrixCOM& c) { return c.WatchAxisRT(0, 0, 0, nullptr); }},
        {"probesystem list \"\"",
         {"data \"A\"", "ready"},
         [](CZendrixCOM& c) {
             Names n;
             return c.GetProbesystemList(n, "") && n == Names{"A"};
         }},
        {"probesystem records \"A\"",
         {"data \"A\" 1 1 2 3 4 5 6", "data \"A\" 2 0 0 0 0 0 0", "ready"},
         [](CZendrixCOM& c) {
             std::vector<CProbesystemList> records;
             return c.GetProbesystemList(records, "A") && records.size() == 1 && records[0].name == "A" &&
                    records[0].entries.size() == 2 && records[0].entries[0].x6 == 6 &&
                    records[0].entries[1].id == 2;
         }},
        {"probesystem info",
         {"data \"A\" 3", "ready"},
         [](CZendrixCOM& c) {
             std::string name;
             long id = 0;
             return c.ProbesystemInfo(name, id) && name == "A" && id == 3;
         }},
        {"probesystem type",
         {"data 2 10 20 0.5 1.5", "ready"},
         [](CZendrixCOM& c) {
             Probesystemtype type;
             return c.ProbesystemType(type) && type.kind == 2 && type.a == 10 && type.b == 20 &&
                    type.c == 0.5 && type.d == 1.5;
         }},
        {"probe list 0 0",
         {"data 1 2 0.1 0.2 0.3 0.4", "ready"},
         [](CZendrixCOM& c) {
             std::vector<CProbe> probes;
             return c.ProbeList(probes, 0, 0) && probes.size() == 1 && probes[0].tip == 2 &&
                    probes[0].x4 == 0.4;
         }},
        {"reset", {"ready"}, [](CZendrixCOM& c) { return c.Reset(); }},
        {"modulo \"x\" \"a \\\"b\\\"\"",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a = some_axes();
             return c.Modulo(a);
         }},
        {"movebase \"x\" \"a \\\"b\\\"\"",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a = some_axes();
             return c.SetMoveBase(a);
         }},
        {"scanbase \"x\" \"a \\\"b\\\"\"",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a = some_axes();
             return c.SetScanBase(a);
         }},
        {"probe define 1 2 0.1 0.2 0.3 0.4",
         {"ready"},
         [](CZendrixCOM& c) { return c.ProbeDefine(1, 2, 0.1, 0.2, 0.3, 0.4); }},
        {"probe delete 1 2", {"ready"}, [](CZendrixCOM& c) { return c.ProbeDelete(1, 2); }},
        {"probesystem define \"A\" 3 1 2 3 4 5 6",
         {"ready"},
         [](CZendrixCOM& c) { return c.ProbesystemDefine("A", 3, 1, 2, 3, 4, 5, 6); }},
        {"probesystem delete \"A\" 3", {"ready"}, [](CZendrixCOM& c) { return c.ProbesystemDelete("A", 3); }},
        {"spin enable \"-c\"",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a = {"-c"};
             return c.SpinEnable(a);
         }},
        {"spin disable \"c\"",
         {"ready"},
         [](CZendrixCOM& c) {
             Names a = {"c"};
             return c.SpinDisable(a);
         }},
        {"wobble 1 2 3 4 5 6.5", {"ready"}, [](CZendrixCOM& c) { return c.SetWobble(1, 2, 3, 4, 5, 6.5); }},
        {"send \"block\" \"two\\r\\nlines\"",
         {"ready"},
         [](CZendrixCOM& c) { return c.Send("block", "two\r\nlines"); }},
        {"moveaxis \"x\"",
         {"data 1", "data two words", "ready"},
         [](CZendrixCOM& c) {
             Names reply = {"old"};
             return c.Execute("moveaxis \"x\"", reply, nullptr) && reply == Names{"1", "two words"};
         }},
    };
}

TEST_F(ClientFixture, EachQuerySendsItsLineAndReadsItsAnswer) {
    const std::vector<Row> rows = query_rows();
    play([&rows](Peer& peer) {
        peer.hello();
        for (const Row& row : rows) peer.expect(row.words, row.answer);
        peer.wait_for_close();
    });
    client->ThrowExceptions(true);
    for (const Row& row : rows)
        EXPECT_EQ(test::thrown([&] { EXPECT_TRUE(row.call(*client)) << row.words; }), "no exception")
            << row.words;
    EXPECT_EQ(record.all(), Names());
    finish();
}

TEST_F(ClientFixture, EachRefusedQueryTellsTheErrorCallbackAndThenFails) {
    const std::vector<Row> rows = query_rows();
    play([&rows](Peer& peer) {
        peer.hello();
        for (const Row& row : rows) peer.expect(row.words, {"error \"syntax invalid\"", "ready"});
        peer.wait_for_close();
    });
    client->ThrowExceptions(true);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(test::thrown([&] { rows[i].call(*client); }), "syntax invalid") << rows[i].words;
        EXPECT_EQ(record.all(), Names(i + 1, "error 0 syntax invalid")) << rows[i].words;
    }
    finish();
}

using Begin = std::function<bool(CZendrixCOM&, long*)>;

std::vector<std::pair<std::string, Begin>> transaction_rows() {
    const std::string at = some_targets_text;
    static std::vector<Position> targets = some_targets();
    static std::vector<Position> polygon = {{"x", 1.0, 0}, {"", 0.0, 0}, {"x", 2.0, -1}, {"", 0.0, 0}};
    return {
        {"init", [](CZendrixCOM& c, long* tid) { return c.Init(tid); }},
        {"init \"x\" \"a \\\"b\\\"\"",
         [](CZendrixCOM& c, long* tid) {
             Names a = some_axes();
             return c.InitAxes(a, tid);
         }},
        {"set" + at, [](CZendrixCOM& c, long* tid) { return c.Set(targets, tid); }},
        {"move" + at, [](CZendrixCOM& c, long* tid) { return c.Move(targets.size(), targets.data(), tid); }},
        {"move", [](CZendrixCOM& c, long* tid) { return c.Move(0, nullptr, tid); }},
        {"movezero" + at,
         [](CZendrixCOM& c, long* tid) { return c.MoveZero(targets.size(), targets.data(), tid); }},
        {"movepoly 2 \"x\"+=1 ; \"x\"=2 ;",
         [](CZendrixCOM& c, long* tid) { return c.MovePoly(2, 4, polygon.data(), tid); }},
        {"movecircle 1 2 3 4 5 6 7" + at,
         [](CZendrixCOM& c, long* tid) { return c.MoveCircle(1, 2, 3, 4, 5, 6, 7, 5, targets.data(), tid); }},
        {"movecone 1 2 3 4 5 6 7 8 9" + at,
         [](CZendrixCOM& c, long* tid) {
             return c.MoveCone(1, 2, 3, 4, 5, 6, 7, 8, 9, 5, targets.data(), tid);
         }},
        {"scan" + at, [](CZendrixCOM& c, long* tid) { return c.Scan(5, targets.data(), tid); }},
        {"scanpoint" + at, [](CZendrixCOM& c, long* tid) { return c.ScanPoint(5, targets.data(), tid); }},
        {"scanpoly 2 \"x\"+=1 ; \"x\"=2 ;",
         [](CZendrixCOM& c, long* tid) { return c.ScanPoly(2, 4, polygon.data(), tid); }},
        {"scancircle 1 2 3 4 5 6 7" + at,
         [](CZendrixCOM& c, long* tid) { return c.ScanCircle(1, 2, 3, 4, 5, 6, 7, 5, targets.data(), tid); }},
        {"scancone 1 2 3 4 5 6 7 8 9.5" + at,
         [](CZendrixCOM& c, long* tid) {
             return c.ScanCone(1, 2, 3, 4, 5, 6, 7, 8, 9.5, 5, targets.data(), tid);
         }},
        {"scandata \"x\" \"time\"",
         [](CZendrixCOM& c, long* tid) {
             Names n = {"x", "time"};
             return c.ScanData(n, tid);
         }},
        {"probe load 1 2", [](CZendrixCOM& c, long* tid) { return c.ProbeLoad(1, 2, tid); }},
        {"probe change 1 2", [](CZendrixCOM& c, long* tid) { return c.ProbeChange(1, 2, tid); }},
        {"probe unload", [](CZendrixCOM& c, long* tid) { return c.ProbeUnload(tid); }},
        {"probe offset" + at,
         [](CZendrixCOM& c, long* tid) { return c.ProbeOffset(5, targets.data(), tid); }},
        {"probesystem load \"A\" 3",
         [](CZendrixCOM& c, long* tid) { return c.ProbesystemLoad("A", 3, tid); }},
        {"keypad enable \"x\"",
         [](CZendrixCOM& c, long* tid) {
             Names a = {"x"};
             return c.KeyPad(true, a, tid);
         }},
        {"keypad disable",
         [](CZendrixCOM& c, long* tid) {
             Names a;
             return c.KeyPad(false, a, tid);
         }},
        {"receive \"block\"",
         [](CZendrixCOM& c, long* tid) {
             std::string data;
             return c.Receive("block", data, tid);
         }},
        {"movehome",
         [](CZendrixCOM& c, long* tid) {
             Names reply;
             return c.Execute("movehome", reply, tid);
         }},
    };
}

TEST_F(ClientFixture, EachTransactionIsAcceptedAndCompletesWithItsId) {
    const auto rows = transaction_rows();
    play([&rows](Peer& peer) {
        peer.hello();
        for (const auto& row : rows) peer.expect(row.first, {"accepted", "ready"});
        peer.wait_for_close();
    });
    Names expected;
    for (const auto& row : rows) {
        long tid = 0;
        EXPECT_TRUE(row.second(*client, &tid)) << row.first;
        EXPECT_GT(tid, 0) << row.first;
        expected.push_back("complete " + std::to_string(tid));
        ASSERT_TRUE(record.wait_for(expected.size())) << row.first;
    }
    EXPECT_EQ(record.all(), expected);
    finish();
}

TEST_F(ClientFixture, EachRefusedTransactionLeavesNoIdAndCompletesNothing) {
    const auto rows = transaction_rows();
    std::vector<std::string> ids;
    play([&](Peer& peer) {
        peer.hello();
        for (const auto& row : rows)
            ids.push_back(peer.expect(row.first, {"error \"wrong state\"", "ready"}).id);
        peer.wait_for_close();
    });
    for (std::size_t i = 0; i < rows.size(); ++i) {
        long tid = 77;
        EXPECT_FALSE(rows[i].second(*client, &tid)) << rows[i].first;
        EXPECT_EQ(tid, 0) << rows[i].first;
        ASSERT_EQ(record.all().size(), i + 1) << rows[i].first;
    }
    finish();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(record.all()[i], "error " + std::to_string(std::stol(ids[i])) + " wrong state");
    }
    finish();
}

TEST_F(ClientFixture, WrongArgumentsAreRefusedWithoutARequest) {
    play([](Peer& peer) {
        peer.hello();
        peer.expect("master", {"ready"});
        peer.wait_for_close();
    });
    client->ThrowExceptions(true);
    Names reply;
    long tid = 5;
    double value = 3.0;
    Position strange = {"x", 1.0, 9};
    Position nameless = {nullptr, 1.0, -1};
    std::vector<Position> nameless_list = {nameless};
    const char* no_name[] = {nullptr};
    const std::function<void()> calls[] = {[&] { client->Execute(nullptr, reply, nullptr); },
                                           [&] { client->Execute("", reply, nullptr); },
                                           [&] { client->Execute("get\r\nmove", reply, &tid); },
                                           [&] { client->Execute("get\nmove", reply, nullptr); },
                                           [&] { client->Move(1, nullptr, &tid); },
                                           [&] { client->Move(1, &strange, &tid); },
                                           [&] { client->Move(1, &nameless, &tid); },
                                           [&] { client->Get(nameless_list); },
                                           [&] { client->Get(nullptr, &value); },
                                           [&] { client->Get("x", nullptr); },
                                           [&] { client->ScanAxis(1, no_name); },
                                           [&] { client->ScanAxis(1, nullptr); },
                                           [&] { client->WatchAxisRT(1, 1, 1, no_name); },
                                           [&] { client->SetSync3(static_cast<SyncType>(2)); },
                                           [&] { client->GetSync3(nullptr); }};
    for (const auto& call : calls) EXPECT_EQ(test::thrown(call), "invalid argument");
    EXPECT_EQ(record.all(), Names(std::size(calls), "error 0 invalid argument"));
    const std::string huge(serverdll::client_options().line, 'x');
    EXPECT_EQ(test::thrown([&] { client->Execute(huge.c_str(), reply, nullptr); }),
              "the request is too long");
    EXPECT_EQ(test::thrown([&] { client->Send(huge, "block"); }), "the request is too long");
    EXPECT_EQ(test::thrown([&] { client->Send(huge, huge); }), "the request is too long");
    EXPECT_TRUE(client->Master());
    finish();
}

TEST_F(ClientFixture, AnAnswerOfAnotherShapeIsAFailure) {
    play([](Peer& peer) {
        peer.hello();
        peer.serve({{"get \"x\"", {"data 1 2", "ready"}},
                    {"get \"y\"", {"ready"}},
                    {"get \"z\"", {"data 1", "data 1", "ready"}},
                    {"machine name", {"data 1 2", "ready"}},
                    {"capabilities", {"data \"x\" 0 1", "ready"}},
                    {"scanaxis", {"data 2", "ready"}}});
    });
    client->ThrowExceptions(true);
    double value = 7.0;
    std::map<std::string, CAxis> axes = {{"kept", {}}};
    for (const char* axis : {"x", "y", "z"}) {
        EXPECT_EQ(test::thrown([&] { client->Get(axis, &value); }), "the server's answer isn't understood")
            << axis;
    }
    EXPECT_EQ(value, 7.0);
    EXPECT_EQ(test::thrown([&] { client->GetMachineName(); }), "the server's answer isn't understood");
    EXPECT_EQ(test::thrown([&] { client->Capabilities(axes, false); }),
              "the server's answer isn't understood");
    EXPECT_EQ(axes.size(), 1U);
    EXPECT_EQ(test::thrown([&] { client->ScanAxis(0, nullptr); }), "the server's answer isn't understood");
    finish();
}

TEST_F(ClientFixture, AReceivedBlockWaitsLineByLine) {
    Gate go;
    play([&go](Peer& peer) {
        peer.hello();
        const test::Request request =
            peer.expect("receive \"b\"", {"accepted", "data base64 \"QUJD\"", "data \"REVG\""});
        go.wait();
        peer.answer(request, {"ready"});
        peer.expect("receive \"empty\"", {"accepted", "ready"});
        peer.expect("receive \"both\"", {"accepted", "data \"one\"", "data \"two\"", "ready"});
        peer.wait_for_close();
    });
    std::string data = "untouched";
    long tid = 0;
    EXPECT_FALSE(client->HasReceiver(1));
    EXPECT_TRUE(client->Receive("b", data, &tid));
    EXPECT_TRUE(client->HasReceiver(tid));
    go.open();
    ASSERT_TRUE(record.wait_for(1));
    EXPECT_EQ(client->ReplyLineCount(tid), 2U);
    EXPECT_EQ(client->PerLineSize(), 13U);
    std::string line;
    EXPECT_TRUE(client->TakeReplyLine(tid, line));
    EXPECT_EQ(line, "base64 \"QUJD\"");
    EXPECT_TRUE(client->HasReceiver(tid));
    EXPECT_TRUE(client->TakeReplyLine(tid, line));
    EXPECT_EQ(line, "\"REVG\"");
    EXPECT_FALSE(client->TakeReplyLine(tid, line));
    EXPECT_EQ(data, "untouched");

    // The receiver of an empty block is still there when its completion is told.
    test::CompletionLook look{*client, record};
    look.install();
    EXPECT_TRUE(client->SetSync3(ZX_SYNC));
    long empty = 0;
    EXPECT_TRUE(client->Receive("empty", data, &empty));
    EXPECT_EQ(data, "");
    EXPECT_TRUE(client->Receive("both", data, &tid));
    EXPECT_EQ(data, "onetwo");
    EXPECT_EQ(client->ReplyLineCount(tid), 2U);
    ASSERT_TRUE(record.wait_for(3));
    EXPECT_EQ(record.all()[1], "complete " + std::to_string(empty));
    EXPECT_EQ(record.all()[2], "complete " + std::to_string(tid));
    finish();
}

}  // namespace
