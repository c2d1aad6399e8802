// magazine from outside: a file of slots, held against the machine's probe systems.
#include "block_host.h"

namespace zxhost_test {
namespace {

const std::string three_slots =
    "[Fixed head_1_slot1]\nload.program=\"load slot 1\"\nunload.program=\"unload slot 1\"\n"
    "change_to_2.program=\"from 1 to 2\"\nprobe=7\n"
    "[Fixed head_1_slot2]\nload.program=\"load slot 2\"\nunload.program=\"unload slot 2\"\n"
    "[Swivel \"S2\"_3_slot1]\nload.program=a\nunload.program=b\nprobe=8\n"
    "[HISTORY]\nlast=never\n";

class Magazine : public BlockVerbTest {
protected:
    std::string write(const std::string& content = three_slots) const { return file("m.ini", content); }
    std::string content() const { return directory.content("m.ini"); }

    void expect_damage(const std::string& content, int line, const std::string& text) const {
        write(content);
        const ProcessResult result = run({"--format", "json", "magazine", "check", m});
        EXPECT_EQ(result.exit_status, 1) << result.err;
        const Json verdict = Json::parse(result.out, nullptr, false);
        EXPECT_EQ(verdict["state"], "damaged");
        EXPECT_EQ(verdict["fault"]["line"], line) << verdict;
        EXPECT_NE(result.err.find("m.ini:" + std::to_string(line) + ": "), std::string::npos) << result.err;
        EXPECT_NE(result.err.find(text), std::string::npos) << result.err;
        expect_refusal({"magazine", "set", m, "1=3"}, 1, {text});
        expect_refusal({"magazine", "show", m}, 1, {text});
        EXPECT_EQ(this->content(), content);
    }

    const std::string m = path("m.ini");
};

TEST_F(Magazine, ShowsTheSlotsOfAllProbeSystems) {
    write();
    const Json rows = json({"magazine", "show", m});
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], Json({{"system", "Fixed head"},
                             {"id", 1},
                             {"slot", 1},
                             {"probe", 7},
                             {"load", "load slot 1"},
                             {"unload", "unload slot 1"}}));
    EXPECT_EQ(rows[1]["probe"], nullptr);
    EXPECT_EQ(rows[2]["system"], "Swivel \"S2\"");
    EXPECT_EQ(json({"magazine", "show", m, "--system", "Swivel \"S2\"", "3"}), Json::array({rows[2]}));
    EXPECT_EQ(json({"magazine", "show", m, "--system", "Swivel \"S2\"", "4"}), Json::array());
    EXPECT_NE(said({"magazine", "show", m}).find("load slot 2"), std::string::npos);
}

TEST_F(Magazine, SetSaysWhichProbeLiesInASlot) {
    write();
    const Json rows = json({"magazine", "set", m, "1=0", "2=9"});
    EXPECT_EQ(rows[0]["probe"], nullptr);
    EXPECT_EQ(rows[1]["probe"], 9);
    EXPECT_NE(content().find("probe=9\r\n"), std::string::npos) << content();
    EXPECT_NE(content().find("[HISTORY]\r\nlast=never\r\n"), std::string::npos) << content();
    EXPECT_EQ(json({"magazine", "set", m, "1=2147483647", "--system", "Swivel \"S2\"", "3"})[0]["probe"],
              2147483647);
}

TEST_F(Magazine, SetMakesNoSlotsAndChangesAllOrNothing) {
    write();
    expect_refusal({"magazine", "set", m, "1=3", "9=4"}, 1, {"no slot 9", "it has: 1, 2"});
    expect_refusal({"magazine", "set", m, "1"}, 2, {"SLOT=PROBE"});
    expect_refusal({"magazine", "set", m, "1=x"}, 2, {"'x'"});
    expect_refusal({"magazine", "set", m, "1=-1"}, 2, {"'-1'"});
    expect_refusal({"magazine", "set", m, "1=4294967295"}, 2, {"4294967295"});
    expect_refusal({"magazine", "set", m, "1=2", "1=3"}, 2, {"twice"});
    expect_refusal({"magazine", "set", m}, 2, {"SLOT=PROBE"});
    expect_refusal({"magazine", "set", m, "1=2", "--system", "Fixed head", "2"}, 1, {"id 2", "probesystems"});
    expect_refusal({"magazine", "set", m, "1=2", "--system", "Fixed head"}, 2, {"--system"});
    EXPECT_EQ(content(), three_slots);
}

TEST_F(Magazine, DeleteTakesProbesOrAllSlotsOut) {
    write();
    expect_refusal({"magazine", "delete", m, "99"}, 1, {"holds probe 99", "magazine show"});
    expect_refusal({"magazine", "delete", m, "0"}, 2, {"probe 0"});
    expect_refusal({"magazine", "delete", m}, 2, {"--all"});
    expect_refusal({"magazine", "delete", m, "7", "--all"}, 2, {"--all"});
    EXPECT_EQ(content(), three_slots);
    EXPECT_EQ(json({"magazine", "delete", m, "7"})[0]["probe"], nullptr);
    EXPECT_EQ(json({"magazine", "delete", m, "--all"}), Json::array());
    EXPECT_EQ(content(),
              "[HISTORY]\r\nlast=never\r\n[Swivel \"S2\"_3_slot1]\r\nload.program=a\r\nunload.program=b\r\n"
              "probe=8\r\n");
}

TEST_F(Magazine, ProgramsComeWithoutTheirQuotes) {
    write();
    EXPECT_EQ(said({"magazine", "load", m, "1"}), "load slot 1\n");
    EXPECT_EQ(said({"magazine", "unload", m, "2"}), "unload slot 2\n");
    EXPECT_EQ(said({"magazine", "change", m, "1", "2"}), "from 1 to 2\n");
    EXPECT_EQ(said({"magazine", "change", m, "2", "1"}), "unload slot 2\";\"load slot 1\n");
    EXPECT_EQ(json({"magazine", "load", m, "1", "--system", "Swivel \"S2\"", "3"}), Json({{"program", "a"}}));
    expect_refusal({"magazine", "load", m, "9"}, 1, {"no slot 9"});
    expect_refusal({"magazine", "change", m, "2", "9"}, 1, {"no program that changes from slot 2 to slot 9"});
    expect_refusal({"magazine", "change", m, "2"}, 2, {"two slots"});
    expect_refusal({"magazine", "load", m, "1", "2"}, 2, {"one slot"});
}

TEST_F(Magazine, CheckNamesTheLineOfTheFirstFault) {
    write();
    EXPECT_EQ(
        json({"magazine", "check", m}),
        Json({{"state", "good"}, {"slots", 3}, {"file", m}, {"fault", nullptr}, {"remarks", Json::array()}}));
    expect_damage("[Fixed head_1_slot1]\nload.program=a\n[Other_1_slot1]\n", 1, "unload.program is missing");
    expect_damage("# c\n\n[Other_1_slot1]\nload.program=a\nunload.program=b\n", 3, "no probe system 'Other'");
    expect_damage("[Fixed head_1_slot1]\nload.program=a\nunload.program=b\nnothing\n", 4, "m.ini:4: ");
}

TEST_F(Magazine, AFileThatIsNotThereOrUnreadableIsWrongUsage) {
    expect_refusal({"magazine", "check", m}, 2, {"m.ini isn't there"});
    expect_refusal({"magazine", "set", m, "1=2"}, 2, {"m.ini isn't there"});
    std::filesystem::create_directory(m);
    expect_refusal({"magazine", "check", m}, 2, {"can't be read"});
    expect_refusal({"magazine", "set", m, "1=2"}, 2, {"can't be read"});
}

TEST_F(Magazine, AChangeThatWouldSpoilTheFileIsRefused) {
    const std::string odd = "[Fixed head_01_slot1]\nload.program=a\nunload.program=b\nprobe=7\n";
    write(odd);
    EXPECT_NE(said({"magazine", "check", m}).find("m.ini:1: [Fixed head_01_slot1]: "), std::string::npos);
    EXPECT_EQ(json({"magazine", "show", m})[0]["probe"], 7);
    expect_refusal({"magazine", "set", m, "1=2"}, 1, {"m.ini:1: ", "[Fixed head_1_slot1]"});
    expect_refusal({"magazine", "delete", m, "7"}, 1, {"m.ini:1: "});
    EXPECT_EQ(content(), odd);
}

TEST_F(Magazine, WithoutALoadedProbeSystemOneIsNamed) {
    write();
    EXPECT_EQ(run({"probesystem", "unload"}).exit_status, 0);
    EXPECT_EQ(json({"magazine", "show", m}).size(), 3u);
    expect_refusal({"magazine", "set", m, "1=2"}, 1, {"no probe system is loaded", "--system NAME ID"});
    EXPECT_EQ(json({"magazine", "set", m, "1=2", "--system", "Fixed head", "1"})[0]["probe"], 2);
}

TEST_F(Magazine, NeedsAMachineWithProbeSystems) {
    write();
    const RichMachine minimal({}, "minimal.ini");
    expect_refusal(minimal, {"magazine", "check", m}, 1, {"no probe systems"});
    expect_refusal(minimal, {"magazine", "show", m}, 1, {"no probe systems"});
}

TEST_F(Magazine, IsExaminedInAScriptWithoutChange) {
    write();
    const std::string script = file("s.zx", "magazine set " + m + " 1=3\nmagazine set " + m + "\n");
    const ProcessResult checked = run({"run", "--check", script});
    EXPECT_EQ(checked.exit_status, 2);
    EXPECT_NE(checked.out.find("s.zx:2: "), std::string::npos) << checked.out;
    EXPECT_EQ(content(), three_slots);
}

}  // namespace
}  // namespace zxhost_test
