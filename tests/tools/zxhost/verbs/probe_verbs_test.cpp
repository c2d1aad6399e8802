// probes, probe ..., probesystems, probesystem ... from outside.
#include "rich_machine.h"

namespace zxhost_test {
namespace {

class ProbeVerbs : public VerbTest {
protected:
    Json loaded() const { return json({"probes"})["loaded"]; }
};

TEST_F(ProbeVerbs, ProbesShowsWhatIsDefinedAndLoaded) {
    const Json all = json({"probes"});
    EXPECT_EQ(all["loaded"], Json({{"probe", 1}, {"tip", 1}}));
    EXPECT_EQ(all["highest"], Json({{"probe", 64}, {"tip", 8}}));
    ASSERT_EQ(all["probes"].size(), 6u);
    EXPECT_EQ(all["probes"][1], Json({{"probe", 2},
                                      {"tip", 1},
                                      {"x", 20.0},
                                      {"y", 0.0},
                                      {"z", -60.0},
                                      {"d", 2.0},
                                      {"loaded", false}}));
    EXPECT_EQ(json({"probes", "2"})["probes"].size(), 3u);
    EXPECT_EQ(json({"probes", "2", "3"})["probes"].size(), 1u);
    const std::string table = said({"probes", "1"});
    EXPECT_NE(table.find("-50.0000  3.0000  yes"), std::string::npos) << table;
    EXPECT_NE(table.find("loaded: probe 1 with tip 1; highest numbers: probe 64, tip 8\n"),
              std::string::npos);
}

TEST_F(ProbeVerbs, LoadAndUnloadEndWithWhatIsLoaded) {
    EXPECT_EQ(json({"probe", "unload"})[0], Json({{"probe", nullptr}, {"tip", nullptr}}));
    EXPECT_EQ(loaded(), nullptr);
    EXPECT_EQ(said({"probe", "load", "2", "3"}), "loaded probe  tip\n------------  ---\n           2    3\n");
    EXPECT_EQ(loaded(), Json({{"probe", 2}, {"tip", 3}}));
    expect_refusal({"probe", "load", "3"}, 1, {"probe load: probe already loaded", "zxhost probes"});
}

TEST_F(ProbeVerbs, WithoutATipTheFirstIsTakenAndTheMachineWarns) {
    said({"probe", "unload"});
    const ProcessResult result = run({"probe", "load", "2"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_NE(result.err.find("warning: ambiguous tip, using first"), std::string::npos) << result.err;
    EXPECT_EQ(loaded(), Json({{"probe", 2}, {"tip", 1}}));
}

TEST_F(ProbeVerbs, DefineOffsetAndDelete) {
    const Json defined = json({"probe", "define", "7", "2", "x=1.5", "z=-80.25", "d=4"})["probes"];
    ASSERT_EQ(defined.size(), 1u);
    EXPECT_EQ(defined[0]["x"], 1.5);
    EXPECT_EQ(defined[0]["y"], 0.0);
    EXPECT_EQ(defined[0]["z"], -80.25);
    EXPECT_EQ(defined[0]["d"], 4.0);
    expect_refusal({"probe", "define", "7", "2"}, 1, {"tip already defined", "probe delete"});
    EXPECT_EQ(json({"probe", "delete", "7", "2"})["probes"].size(), 6u);
    const Json offset = json({"probe", "offset", "z=-49", "x+=0.5"})["probes"];
    EXPECT_EQ(offset[0]["z"], -49.0);
    EXPECT_EQ(offset[0]["x"], 0.5);
    EXPECT_EQ(json({"probe", "offset", "x+=0.25"})["probes"][0]["x"], 0.75);
}

TEST_F(ProbeVerbs, UnknownProbesAreAnsweredWithTheKnown) {
    expect_refusal({"probe", "load", "9", "1"}, 1,
                   {"probe load: undefined probe", "no probe '9'", "it knows: 1, 2, 3, 12;"});
    expect_refusal({"probe", "delete", "2", "5"}, 1,
                   {"probe delete: undefined tip", "no tip of probe 2 '5'", "it knows: 1, 2, 3;"});
    expect_refusal({"probe", "load", "-1", "1"}, 1, {"invalid probe number", "it knows: 1, 2, 3, 12;"});
    expect_refusal({"probe", "define", "2147483647", "1"}, 1, {"invalid probe number", "zxhost probes"});
    expect_refusal({"probes", "9"}, 1, {"no probe '9'", "1, 2, 3, 12"});
    expect_refusal({"probe", "delete", "1", "1"}, 1, {"can't delete active probe", "probe unload"});
    EXPECT_EQ(json({"probes"})["probes"].size(), 6u);
}

TEST_F(ProbeVerbs, WrongNumbersAreWrongUsage) {
    expect_refusal({"probe", "load", "2.9"}, 2, {"'2.9'", "whole number"});
    expect_refusal({"probe", "load", "99999999999", "1"}, 2, {"'99999999999'"});
    expect_refusal({"probe", "load", "1", "2", "3"}, 2, {"zxhost probe load PROBE [TIP]"});
    expect_refusal({"probe", "delete", "1"}, 2, {"zxhost probe delete PROBE TIP"});
    expect_refusal({"probe", "define", "1", "1", "q=1"}, 2, {"'q'", "x, y, z"});
    expect_refusal({"probe", "define", "1", "1", "x=nan"}, 2, {"'x=nan'", "finite"});
    expect_refusal({"probe", "offset"}, 2, {"COORDINATE"});
    expect_refusal({"probe"}, 2, {"zxhost probe --help"});
    expect_refusal({"probe", "juggle"}, 2, {"there is no 'probe juggle'"});
    expect_refusal({"probe", "offset", "c=1"}, 1, {"probe offset: invalid axis"});
}

TEST_F(ProbeVerbs, AMachineWithoutAChangerSaysSo) {
    expect_refusal({"probe", "change", "3", "1"}, 1, {"probe change", "zxhost info"});
}

TEST_F(ProbeVerbs, ProbesystemsShowsNamesIdsAndTheLoadedOne) {
    const Json all = json({"probesystems"});
    EXPECT_EQ(all["loaded"]["name"], "Fixed head");
    EXPECT_EQ(all["loaded"]["id"], 1);
    EXPECT_EQ(all["loaded"]["type"], 2);
    EXPECT_EQ(all["loaded"]["c"], 0.25);
    EXPECT_EQ(all["loaded"]["d"], nullptr);
    ASSERT_EQ(all["probesystems"].size(), 5u);
    EXPECT_EQ(all["probesystems"][0], Json({{"name", "Fixed head"},
                                            {"id", 1},
                                            {"numbers", {0.0, 0.0, 120.0, 0.0, 0.0, 0.0}},
                                            {"loaded", true}}));
    EXPECT_EQ(all["probesystems"][1],
              Json({{"name", "Optical"}, {"id", nullptr}, {"numbers", nullptr}, {"loaded", false}}));
    EXPECT_EQ(json({"probesystems", "Swivel \"S2\""})["probesystems"].size(), 3u);
    const std::string table = said({"probesystems"});
    EXPECT_NE(table.find("Swivel \"S2\""), std::string::npos) << table;
    expect_refusal({"probesystems", "no such\n"}, 1,
                   {"'no such\\x0a'", "Fixed head, Optical, Swivel \"S2\""});
}

TEST_F(ProbeVerbs, LoadAndUnloadAProbesystemWithQuotesInItsName) {
    const Json loaded = json({"probesystem", "load", "Swivel \"S2\"", "12"})["loaded"];
    EXPECT_EQ(loaded["name"], "Swivel \"S2\"");
    EXPECT_EQ(loaded["type"], 3);
    EXPECT_EQ(loaded["b"], 24);
    const ProcessResult unloaded = run({"probesystem", "unload"});
    EXPECT_EQ(unloaded.exit_status, 0);
    EXPECT_EQ(unloaded.err, "");  // that none is loaded is an answer and no error
    EXPECT_NE(unloaded.out.find("loaded: none"), std::string::npos) << unloaded.out;
    expect_refusal({"probesystem", "unload"}, 1, {"probesystem not loaded", "probesystem load"});
}

TEST_F(ProbeVerbs, DefineAndDeleteAProbesystem) {
    const Json defined = json({"probesystem", "define", "Optical", "3", "1.5", "-2"})["probesystems"];
    ASSERT_EQ(defined.size(), 1u);
    EXPECT_EQ(defined[0]["id"], 3);
    EXPECT_EQ(defined[0]["numbers"], Json({1.5, -2.0, 0.0, 0.0, 0.0, 0.0}));
    expect_refusal({"probesystem", "define", "Optical", "3"}, 1,
                   {"probesystem already defined", "probesystem delete"});
    json({"probesystem", "delete", "Optical", "3"});
    expect_refusal({"probesystem", "define", "Optical", "-3"}, 1,
                   {"argument out of range", "zxhost probesystems"});
    expect_refusal({"probesystem", "delete", "Optical", "3"}, 1,
                   {"probesystem delete: ", "no id of probe system 'Optical' '3'", "it knows none"});
    expect_refusal({"probesystem", "load", "Fixed head", "7"}, 1, {"'7'", "it knows: 1;"});
    expect_refusal({"probesystem", "load", "nope", "1"}, 1, {"'nope'", "Fixed head, Optical"});
    expect_refusal({"probesystem", "define", "nope", "1"}, 1, {"'nope'", "Fixed head, Optical"});
}

TEST_F(ProbeVerbs, WrongProbesystemsAreWrongUsage) {
    expect_refusal({"probesystem", "load", "Optical"}, 2, {"zxhost probesystem load NAME ID"});
    expect_refusal({"probesystem", "load", "Optical", "1.5"}, 2, {"'1.5'"});
    expect_refusal({"probesystem", "load", "Optical", "1", "2"}, 2, {"'2'"});
    expect_refusal({"probesystem", "define", "Optical", "1", "nan"}, 2, {"'nan'", "finite"});
    expect_refusal({"probesystem", "define", "Optical", "1", "1", "2", "3", "4", "5", "6", "7"}, 2, {"six"});
}

TEST_F(ProbeVerbs, AMachineWithoutThemSaysSo) {
    const RichMachine plain({}, "minimal.ini");
    expect_refusal(plain, {"probes"}, 1, {"this machine has no probes", "zxhost info"});
    expect_refusal(plain, {"probesystems"}, 1, {"this machine has no probe systems"});
    expect_refusal(plain, {"probe", "load", "1"}, 1, {"probe load: this machine has no such command"});
    expect_refusal(plain, {"probesystem", "load", "a", "1"}, 1, {"no such command"});
}

TEST_F(ProbeVerbs, AQueryThatTheMachineRefusesIsAnError) {
    const RichMachine refusing({"--fault", "refuse@probe list:1"});
    expect_refusal(refusing, {"probes"}, 1, {"zxhost: the list of probes: "});
    EXPECT_EQ(run_on(refusing, {"probes"}).exit_status, 0);
}

}  // namespace
}  // namespace zxhost_test
