// The host's questions about probe systems and probes, all roads of each from one table.
#include <cstdint>
#include <limits>

#include "driver_fixture.h"

namespace {

// One query: how it is asked, its answer as text, and what it says when it fails.
struct Query {
    const char* name;
    const char* call;       // the client's
    const char* operation;  // the same without arguments
    const char* answer;
    const char* neutral;
    const char* on_false;
    const char* on_error;  // without the error's text
    std::function<std::string(MMachAbstract&)> ask;
};

std::string show(bool answer) { return answer ? "true" : "false"; }
std::string show(const std::string* text) { return text ? *text : "null"; }
std::string show(const std::vector<CProbesystemEntry>& entries) {
    std::string text;
    for (const CProbesystemEntry& e : entries) text += e.name + std::to_string(e.id) + " ";
    return text;
}
std::string show(const std::vector<CProbe>& probes) {
    std::string text;
    for (const CProbe& p : probes) text += std::to_string(p.probe) + "/" + std::to_string(p.tip) + " ";
    return text;
}
std::string show(const MMachProbesystemType& t) {
    std::string text = std::to_string(t.type);
    for (const double value : {double(t.a), double(t.b), t.c, t.d}) text += " " + std::to_string(int(value));
    return text;
}

const Query queries[] = {
    {"IsProbesystemDefined", "GetProbesystemList(records, \"ps\")", "GetProbesystemList", "true", "false",
     "IsProbesystemDefined(): GetProbesystemList() failed", "IsProbesystemDefined(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.IsProbesystemDefined("ps")); }},
    {"IsProbesystemIdDefined", "GetProbesystemList(records, \"ps\")", "GetProbesystemList", "true", "false",
     "IsProbesystemIdDefined(): GetProbesystemList() failed", "IsProbesystemIdDefined(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.IsProbesystemIdDefined("ps", 2)); }},
    {"GetFirstSupportedProbesystem", "GetProbesystemList(names, \"\")", "GetProbesystemList", "a", "null",
     "GetFirstSupportedProbesystem(): GetProbesystem() failed",
     "GetFirstSupportedProbesystem(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.GetFirstSupportedProbesystem()); }},
    {"ListProbesystems", "GetProbesystemList(records, \"ps\")", "GetProbesystemList", "ps1 ps2 other3 ", "",
     "ListProbesystems(): GetProbesystemList() failed", "ListProbesystems(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.ListProbesystems("ps", 0)); }},
    {"IsProbesystemLoaded", "ProbesystemInfo()", "ProbesystemInfo", "true", "false",
     "IsProbesystemLoaded(): ProbesystemInfo() failed", "IsProbesystemLoaded(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.IsProbesystemLoaded()); }},
    {"IsProbesystemSupported", "GetProbesystemList(records, \"\")", "GetProbesystemList", "true", "false",
     "IsProbesystemSupported(): GetProbesystemList() failed", "IsProbesystemSupported(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.IsProbesystemSupported("other")); }},
    {"GetActiveProbesystemName", "ProbesystemInfo()", "ProbesystemInfo", "loaded", "",
     "GetActiveProbesystemName(): ProbesystemInfo() failed", "GetActiveProbesystemName(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return m.GetActiveProbesystemName(); }},
    {"GetActiveProbesystemIdNum", "ProbesystemInfo()", "ProbesystemInfo", "17", "0",
     "GetActiveProbesystemIdNum(): ProbesystemInfo() failed",
     "GetActiveProbesystemIdNum(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return std::to_string(m.GetActiveProbesystemIdNum()); }},
    {"GetActiveProbesystemType", "ProbesystemType()", "ProbesystemType", "3 1 2 3 4", "0 0 0 0 0",
     "GetActiveProbesystemType(): ProbesystemType() failed", "GetActiveProbesystemType(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.GetActiveProbesystemType()); }},
    {"IsProbeDefined", "ProbeList(0, 0)", "ProbeList", "true", "false",
     "IsProbeDefined(): ProbeList() failed",
     "IsProbeDefined(): ZendrixCOM error: ", [](MMachAbstract& m) { return show(m.IsProbeDefined(2)); }},
    {"IsTipDefined", "ProbeList(0, 0)", "ProbeList", "true", "false", "IsTipDefined(): ProbeList() failed",
     "IsTipDefined(): ZendrixCOM error: ", [](MMachAbstract& m) { return show(m.IsTipDefined(2, 5)); }},
    {"ListProbes", "ProbeList(3, 4)", "ProbeList", "2/5 1/1 ", "",
     "M2ZendrixMachAbstract::ListProbes(): ProbeList() failed",
     "M2ZendrixMachAbstract::ListProbes(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return show(m.ListProbes(3, 4)); }},
    {"GetMaxProbeNum", "Capabilities(1)", "Capabilities", "64", "0",
     "GetMaxProbeNum(): Capabilities() failed", "GetMaxProbeNum(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return std::to_string(m.GetMaxProbeNum()); }},
    {"GetMinProbeNum", "Capabilities(1)", "Capabilities", "9", "0", "GetMinProbeNum(): Capabilities() failed",
     "GetMinProbeNum(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return std::to_string(m.GetMinProbeNum()); }},
    {"GetActiveProbeNum", "Get(\"probe\")", "Get", "2", "0", "GetActiveProbeNum(): Get() failed",
     "GetActiveProbeNum(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return std::to_string(m.GetActiveProbeNum()); }},
    {"GetActiveTipNum", "Get(\"tip\")", "Get", "5", "0", "GetActiveTipNum(): Get() failed",
     "GetActiveTipNum(): ZendrixCOM error: ",
     [](MMachAbstract& m) { return std::to_string(m.GetActiveTipNum()); }},
};

class ProbesTest : public DriverTest {
protected:
    ProbesTest() {
        answers.command_words = {"probesystem info", "probe info"};
        answers.probesystem_names = {"b", "a", "b"};
        answers.probesystem_records = {{"ps", {{.name = "ps", .id = 1}, {.name = "ps", .id = 2}}},
                                       {"other", {{.name = "other", .id = 3}}}};
        answers.probesystem_name = "loaded";
        answers.probesystem_id = 17;
        answers.probesystem_type = {2, 1, 2, 3.0, 4.0};
        answers.probes = {{.probe = 2, .tip = 5}, {.probe = 1, .tip = 1}};
        answers.pseudo_capabilities["probe"].number2 = 64.9;
        answers.pseudo_capabilities["tip"].number2 = 9.0;
        answers.values = {{"probe", 2.9}, {"tip", 5.0}};
    }
};

class ProbeQueryTest : public ProbesTest, public testing::WithParamInterface<Query> {};

TEST_P(ProbeQueryTest, Answers) {
    open();
    EXPECT_EQ(GetParam().ask(*driver), GetParam().answer);
    EXPECT_EQ(script.take_calls(), Lines{GetParam().call});
}

TEST_P(ProbeQueryTest, IsNeutralAndSilentWithoutAClient) {
    EXPECT_EQ(GetParam().ask(*driver), GetParam().neutral);
    open();
    driver->Close();
    script.take_calls();
    EXPECT_EQ(GetParam().ask(*driver), GetParam().neutral);
    EXPECT_TRUE(script.calls().empty());
}

TEST_P(ProbeQueryTest, IsNeutralWithoutTheWordOfItsKind) {
    const std::string name = GetParam().name;
    const bool system = name.find("system") != std::string::npos;
    answers.command_words = {system ? "probe info" : "probesystem info"};
    open();
    EXPECT_EQ(GetParam().ask(*driver), GetParam().neutral);
    EXPECT_TRUE(script.calls().empty());
}

TEST_P(ProbeQueryTest, LogsAFalseAnswer) {
    open();
    script.answer_false(GetParam().operation);
    EXPECT_EQ(GetParam().ask(*driver), GetParam().neutral);
    EXPECT_EQ(new_log_lines(), Lines{GetParam().on_false});
    script.succeed(GetParam().operation);
    EXPECT_EQ(GetParam().ask(*driver), GetParam().answer) << "it can be asked again at once";
}

TEST_P(ProbeQueryTest, LogsTheClientsError) {
    open();
    script.throw_error(GetParam().operation, "cable");
    EXPECT_EQ(GetParam().ask(*driver), GetParam().neutral);
    EXPECT_EQ(new_log_lines(), Lines{GetParam().on_error + std::string("cable")});
    EXPECT_EQ(channel.get_text(), "");
}

TEST_P(ProbeQueryTest, LetsAForeignExceptionPass) {
    open();
    script.throw_foreign(GetParam().operation);
    EXPECT_THROW(GetParam().ask(*driver), scripted::Foreign);
    script.fire_error(0, "probesystem not loaded");
    EXPECT_EQ(driver->errors().size(), 1U) << "nothing is ignored any more";
}

TEST_P(ProbeQueryTest, StripsTheClientsErrorOnlyForTheActiveName) {
    open();
    const bool strips = std::string(GetParam().name) == "GetActiveProbesystemName";
    script.throw_error(GetParam().operation, "error \"cable\"", 1);
    GetParam().ask(*driver);
    EXPECT_EQ(new_log_lines(),
              Lines{GetParam().on_error + std::string(strips ? "cable" : "error \"cable\"")});
    script.throw_error(GetParam().operation, "error \"\"", 1);
    GetParam().ask(*driver);
    EXPECT_EQ(new_log_lines(), strips ? Lines() : Lines{GetParam().on_error + std::string("error \"\"")});
}

INSTANTIATE_TEST_SUITE_P(All, ProbeQueryTest, testing::ValuesIn(queries),
                         [](const auto& query) { return query.param.name; });

TEST_F(ProbesTest, AnIdCountsInTheFirstRecordOnly) {
    open();
    EXPECT_TRUE(driver->IsProbesystemIdDefined("ps", 1));
    EXPECT_FALSE(driver->IsProbesystemIdDefined("ps", 3));
    answers.probesystem_records.clear();
    EXPECT_FALSE(driver->IsProbesystemIdDefined("ps", 1));
    EXPECT_FALSE(driver->IsProbesystemDefined("ps"));
    EXPECT_FALSE(driver->IsProbesystemSupported("ps"));
}

TEST_F(ProbesTest, SupportedIsComparedExactly) {
    open();
    EXPECT_TRUE(driver->IsProbesystemSupported("ps"));
    EXPECT_FALSE(driver->IsProbesystemSupported("p"));
    EXPECT_FALSE(driver->IsProbesystemSupported("PS"));
}

TEST_F(ProbesTest, AListIsFlattenedAndFilteredById) {
    open();
    EXPECT_EQ(show(driver->ListProbesystems("ps", 2)), "ps2 ");
    EXPECT_EQ(show(driver->ListProbesystems("ps", 3)), "other3 ");
    EXPECT_EQ(show(driver->ListProbesystems("ps", 4)), "");
}

TEST_F(ProbesTest, SupportedProbesystemsAreWalkedInOrder) {
    open();
    EXPECT_EQ(driver->GetNextSupportedProbesystem(), nullptr) << "there is no walk yet";
    EXPECT_EQ(show(driver->GetFirstSupportedProbesystem()), "a");
    EXPECT_EQ(show(driver->GetNextSupportedProbesystem()), "b");
    EXPECT_EQ(driver->GetNextSupportedProbesystem(), nullptr);
    EXPECT_EQ(driver->GetNextSupportedProbesystem(), nullptr);
    answers.probesystem_names = {"c"};
    EXPECT_EQ(show(driver->GetFirstSupportedProbesystem()), "c");
    EXPECT_EQ(driver->GetNextSupportedProbesystem(), nullptr);
    answers.probesystem_names = {};
    EXPECT_EQ(driver->GetFirstSupportedProbesystem(), nullptr);
    EXPECT_EQ(driver->GetNextSupportedProbesystem(), nullptr);
}

TEST_F(ProbesTest, AFailedFirstLeavesTheWalk) {
    open();
    driver->GetFirstSupportedProbesystem();
    script.answer_false("GetProbesystemList");
    EXPECT_EQ(driver->GetFirstSupportedProbesystem(), nullptr);
    EXPECT_EQ(new_log_lines().size(), 1U);
    EXPECT_EQ(show(driver->GetNextSupportedProbesystem()), "b");
    driver->Close();
    EXPECT_EQ(driver->GetNextSupportedProbesystem(), nullptr);
}

TEST_F(ProbesTest, NotLoadedIsAnAnswerForTwoOfThem) {
    open();
    answers.probesystem_name = "";
    script.on_call("ProbesystemInfo", [this] { script.fire_error(0, "probesystem not loaded"); });
    EXPECT_FALSE(driver->IsProbesystemLoaded());
    EXPECT_EQ(driver->GetActiveProbesystemName(), "");
    EXPECT_TRUE(driver->errors().empty());
    EXPECT_EQ(driver->GetActiveProbesystemIdNum(), 17);
    EXPECT_EQ(driver->errors(), Lines{"probesystem not loaded"});
    // Also when the call fails for it.
    script.throw_error("ProbesystemInfo", "probesystem not loaded");
    EXPECT_FALSE(driver->IsProbesystemLoaded());
    EXPECT_EQ(driver->errors().size(), 1U);
    EXPECT_EQ(new_log_lines().size(), 1U);
    script.fire_error(0, "probesystem not loaded");
    EXPECT_EQ(driver->errors().size(), 2U);
}

TEST_F(ProbesTest, EachTypeCopiesWhatCounts) {
    open();
    const std::pair<int, const char*> kinds[] = {
        {0, "1 0 0 0 0"}, {1, "2 1 0 3 0"}, {2, "3 1 2 3 4"}, {3, "0 0 0 0 0"}, {-1, "0 0 0 0 0"}};
    for (const auto& [kind, type] : kinds) {
        answers.probesystem_type.kind = kind;
        EXPECT_EQ(show(driver->GetActiveProbesystemType()), type) << kind;
    }
}

TEST_F(ProbesTest, BothNumbersOfATipCount) {
    open();
    EXPECT_FALSE(driver->IsTipDefined(2, 1));
    EXPECT_FALSE(driver->IsTipDefined(1, 5));
    EXPECT_FALSE(driver->IsProbeDefined(5));
    EXPECT_TRUE(driver->IsProbeDefined(2));
    // Where a long has no more bits than an int this is 2 itself.
    const long like_two = static_cast<long>(std::int64_t{2} + (std::int64_t{1} << 32));
    EXPECT_EQ(driver->IsProbeDefined(like_two), like_two == 2);
}

TEST_F(ProbesTest, NumbersAreTruncatedAndStayWithinAnInt) {
    open();
    const double huge = std::numeric_limits<double>::infinity();
    const std::pair<double, int> values[] = {{2.9, 2},
                                             {-2.9, -2},
                                             {2147483647.5, 2147483647},
                                             {2147483648.0, 0},
                                             {-2147483648.5, -2147483647 - 1},
                                             {-2147483649.0, 0},
                                             {huge, 0},
                                             {-huge, 0},
                                             {std::numeric_limits<double>::quiet_NaN(), 0}};
    for (const auto& [value, number] : values) {
        answers.values["probe"] = value;
        EXPECT_EQ(driver->GetActiveProbeNum(), number) << value;
        answers.pseudo_capabilities["tip"].number2 = value;
        EXPECT_EQ(driver->GetMinProbeNum(), number) << value;
    }
}

TEST_F(ProbesTest, AMachineWithoutThePseudoAxisHasNone) {
    open();
    answers.pseudo_capabilities.clear();
    EXPECT_EQ(driver->GetMaxProbeNum(), 0);
    EXPECT_EQ(driver->GetMinProbeNum(), 0);
}

}  // namespace
