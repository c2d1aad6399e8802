// keypad, spin, wobble, can, raster and components from outside.
#include "rich_machine.h"

namespace zxhost_test {
namespace {

class SwitchVerbs : public VerbTest {
protected:
    static bool has(const Json& rows, const Json& row) {
        return std::find(rows.begin(), rows.end(), row) != rows.end();
    }

    // The verb's answer in one line of text.
    std::string answer(const Words& words, int status) const {
        const ProcessResult result = run(words);
        EXPECT_EQ(result.exit_status, status) << result.err;
        EXPECT_EQ(result.err, "");
        return result.out;
    }
};

TEST_F(SwitchVerbs, KeypadListsEnablesAndDisables) {
    EXPECT_TRUE(has(json({"keypad", "list"}), {{"axis", "x"}, {"active", false}}));
    EXPECT_EQ(json({"keypad", "active"}).size(), 0u);
    EXPECT_TRUE(has(json({"keypad", "enable", "x", "z"}), {{"axis", "x"}, {"active", true}}));
    EXPECT_EQ(json({"keypad", "active"}),
              Json({{{"axis", "x"}, {"active", true}}, {{"axis", "z"}, {"active", true}}}));
    EXPECT_TRUE(has(json({"keypad", "disable", "x"}), {{"axis", "x"}, {"active", false}}));
    EXPECT_EQ(json({"keypad", "active"}), Json({{{"axis", "z"}, {"active", true}}}));
    json({"keypad", "disable"});
    EXPECT_EQ(said({"keypad", "active"}), "axis  keypad has it\n----  -------------\n");
}

TEST_F(SwitchVerbs, KeypadNamesItsAxes) {
    expect_refusal({"keypad", "enable", "w"}, 1,
                   {"keypad enable: invalid axis", "no keypad axis 'w'", "it knows: c, ha, hb"});
    expect_refusal({"keypad", "enable", "no such"}, 1, {"unknown axis", "'no such'"});
    expect_refusal({"keypad", "enable", "x", "x"}, 2, {"'x'", "twice"});
    expect_refusal({"keypad"}, 2, {"zxhost keypad --help"});
}

TEST_F(SwitchVerbs, AKeypadListThatFailsIsAnErrorAndTheNextWorks) {
    const RichMachine failing({"--fault", "refuse@keypad active:1"});
    expect_refusal(failing, {"keypad", "list"}, 1, {"zxhost: the keypad's axes: "});
    EXPECT_EQ(run_on(failing, {"keypad", "list"}).exit_status, 0);
}

TEST_F(SwitchVerbs, SpinTurnsWithItsSign) {
    EXPECT_EQ(json({"spin", "active"}), Json({{{"axis", "sp"}, {"active", true}, {"value", -36.0}}}));
    EXPECT_TRUE(has(json({"spin", "list"}), {{"axis", "c"}, {"active", false}, {"value", nullptr}}));
    EXPECT_TRUE(has(json({"spin", "enable", "c=-"}), {{"axis", "c"}, {"active", true}, {"value", -90.0}}));
    EXPECT_TRUE(has(json({"spin", "enable", "c=+"}), {{"axis", "c"}, {"active", true}, {"value", 90.0}}));
    EXPECT_TRUE(
        has(json({"spin", "disable", "sp"}), {{"axis", "sp"}, {"active", false}, {"value", nullptr}}));
    json({"spin", "disable"});
    EXPECT_EQ(json({"spin", "active"}).size(), 0u);
    expect_refusal({"spin", "enable", "x"}, 1, {"spin enable: ", "no spin axis 'x'", "it knows: c, sp"});
    expect_refusal({"spin", "enable"}, 2, {"AXIS"});
    expect_refusal({"spin", "enable", "c=5"}, 2, {"'c=5'", "AXIS=-"});
}

TEST_F(SwitchVerbs, AnAxisOnTheKeypadDoesNotSpin) {
    json({"keypad", "enable", "c"});
    expect_refusal({"spin", "enable", "c"}, 1, {"spin enable: keypad: enabled", "zxhost keypad disable"});
}

TEST_F(SwitchVerbs, WobbleShowsAndSets) {
    const Json before = json({"wobble", "show"});
    ASSERT_EQ(before.size(), 6u);
    EXPECT_EQ(before[0], Json({{"number", 1}, {"value", 0.5}}));
    EXPECT_EQ(json({"wobble", "set", "1", "-2.5", "0", "0", "0", "1e3"})[1]["value"], -2.5);
    EXPECT_EQ(json({"wobble", "show"})[5]["value"], 1000.0);
    expect_refusal({"wobble", "set", "1", "nan", "0", "0", "0", "0"}, 2, {"'nan'", "finite"});
    expect_refusal({"wobble", "set", "1", "2"}, 2, {"six numbers, and not 2"});
    EXPECT_EQ(json({"wobble", "show"})[1]["value"], -2.5);
}

TEST_F(SwitchVerbs, AWobbleThatCanNotBeReadIsAnError) {
    const RichMachine refusing({"--fault", "refuse@wobble get:1"});
    expect_refusal(refusing, {"wobble", "show"}, 1, {"zxhost: the wobble: "});
}

TEST_F(SwitchVerbs, CanAnswersInTheExitStatus) {
    EXPECT_EQ(answer({"can", "move", "x", "z"}, 0), "yes: x, z can move together\n");
    EXPECT_EQ(answer({"can", "move", "w"}, 1), "no: w can't move\n");
    EXPECT_EQ(answer({"can", "move", "x", "hc"}, 1), "no: hc, x can't move together; inactive: hc\n");
    EXPECT_EQ(answer({"can", "limit", "x"}, 0), "yes: x can drive to a limit\n");
    EXPECT_EQ(answer({"can", "limit"}, 0), "yes: axes can drive to a limit\n");
    EXPECT_EQ(answer({"can", "limit", "c"}, 1), "no: c can't drive to a limit\n");
    EXPECT_EQ(answer({"can", "scan", "ha"}, 1), "no: ha can't scan\n");
    EXPECT_EQ(run({"can", "zero", "x"}).exit_status, 0);
    const ProcessResult no = run({"--format", "json", "can", "move", "w"});
    EXPECT_EQ(no.exit_status, 1);
    EXPECT_EQ(
        Json::parse(no.out),
        Json({{"question", "move"}, {"axes", {"w"}}, {"possible", false}, {"inactive", Json::array()}}));
    expect_refusal({"can", "move", "q"}, 1, {"no axis 'q'", "it knows: air, c, ha"});
    expect_refusal({"can", "move", "x y"}, 1, {"no axis 'x y'"});
    expect_refusal({"can"}, 2, {"zxhost can --help"});
}

TEST_F(SwitchVerbs, RasterShowsRolesAndReasons) {
    const Json rows = json({"raster", "x", "c", "ha"});
    EXPECT_EQ(rows, Json({{{"role", "raster1"}, {"axis", "x"}, {"reason", "asked for"}},
                          {{"role", "raster2"}, {"axis", "y"}, {"reason", "completes the raster"}},
                          {{"role", "raster3"}, {"axis", "z"}, {"reason", "completes the raster"}},
                          {{"role", "rotary"}, {"axis", "c"}, {"reason", "asked for"}},
                          {{"role", nullptr}, {"axis", "ha"}, {"reason", "takes no part in a raster"}}}));
    EXPECT_EQ(json({"raster", "--circle"})[2]["reason"], "asked for");
    EXPECT_EQ(json({"raster", "--polygon", "x,c", "z"})[3]["axis"], "c");
    EXPECT_EQ(json({"raster", "--scanbase", "ha"})[0]["axis"], "ha");
    EXPECT_EQ(json({"raster", "kx"})[0]["reason"], "this machine has no kx");
    expect_refusal({"raster"}, 1, {"raster: no axis to raster", "name at least one"});
    expect_refusal({"raster", "x", "tx"}, 1, {"wrong combination of raster axes", "exclude each other"});
    expect_refusal({"raster", "--scanbase", "hc"}, 1, {"scanbase axis is inactive"});
    expect_refusal({"raster", "--circle", "--polygon", "x"}, 2, {"--circle"});
    expect_refusal({"raster", "--polygon", "x,,z"}, 2, {"needs a name"});
}

TEST_F(SwitchVerbs, ComponentsShowsWhoseTheyAre) {
    const Json rows = json({"components"});
    EXPECT_TRUE(has(rows, {{"name", "controller"}, {"version", "3.1"}, {"of", "machine"}, {"state", 3}}));
    EXPECT_TRUE(has(rows, {{"name", "scanning"}, {"version", "1.0"}, {"of", "option"}, {"state", 0}}));
    EXPECT_TRUE(
        has(rows, {{"name", "backup.m2zendrix_dll"}, {"version", "0.00-1"}, {"of", "driver"}, {"state", 1}}));
    EXPECT_EQ(json({"components", "measuring table"}).size(), 1u);
    expect_refusal({"components", "nope"}, 1, {"no component 'nope'", "controller"});
}

TEST_F(SwitchVerbs, EachHasHelpWithAnExample) {
    for (const Words& words : std::vector<Words>{{"probes"},
                                                 {"probesystems"},
                                                 {"probe", "load"},
                                                 {"probe", "unload"},
                                                 {"probe", "change"},
                                                 {"probe", "define"},
                                                 {"probe", "delete"},
                                                 {"probe", "offset"},
                                                 {"probesystem", "load"},
                                                 {"probesystem", "unload"},
                                                 {"probesystem", "define"},
                                                 {"probesystem", "delete"},
                                                 {"keypad", "list"},
                                                 {"keypad", "active"},
                                                 {"keypad", "enable"},
                                                 {"keypad", "disable"},
                                                 {"spin", "list"},
                                                 {"spin", "active"},
                                                 {"spin", "enable"},
                                                 {"spin", "disable"},
                                                 {"wobble", "show"},
                                                 {"wobble", "set"},
                                                 {"can", "move"},
                                                 {"can", "zero"},
                                                 {"can", "limit"},
                                                 {"can", "scan"},
                                                 {"raster"},
                                                 {"components"},
                                                 {"watch"}}) {
        Words all = words;
        all.push_back("--help");
        std::string example = "example: zxhost";
        for (const std::string& word : words) example += " " + word;
        const std::string help = said(all);
        EXPECT_NE(help.find(example), std::string::npos) << help;
    }
}

}  // namespace
}  // namespace zxhost_test
