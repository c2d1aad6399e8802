#include "machine/descriptionreader.h"

#include <gtest/gtest.h>

namespace zendrix::sim {
namespace {

const char* const axis = "[axis x]\nkind=linear\n";

std::string complaint(const std::string& content) {
    try {
        parse_machine(content, "m.ini");
    } catch (const DescriptionError& error) {
        return error.what();
    }
    return "";
}

TEST(DescriptionReader, TheBuiltInMachineIsTheFile) {
    const MachineDescription built_in = builtin_machine();
    const MachineDescription file = read_machine(MACHINES_DIR "/round4.ini");
    EXPECT_EQ(built_in.name, "Round 4");
    EXPECT_EQ(built_in.name, file.name);
    ASSERT_EQ(built_in.axes.size(), 4u);
    EXPECT_EQ(built_in.axes[0].name, "c");
    EXPECT_EQ(built_in.axes[0].kind, AxisKind::spindle);
    EXPECT_FALSE(built_in.axes[0].has_limits);
    EXPECT_EQ(built_in.axes[1].upper, 200.0);
    EXPECT_TRUE(built_in.axes[1].needs_init);
    EXPECT_EQ(built_in.workpiece.radius, 25.0045);
    ASSERT_EQ(built_in.workpiece.harmonics.size(), 4u);
    EXPECT_EQ(built_in.workpiece.harmonics[1].waves, 3);
    EXPECT_EQ(built_in.workpiece.harmonics[1].amplitude, 0.0025);
    EXPECT_EQ(built_in.workpiece.harmonics[1].phase, 75.0);
    EXPECT_EQ(built_in.components.at("simulation"), "1.0");
    EXPECT_EQ(built_in.seed, 20u);
}

TEST(DescriptionReader, MinimalMachineHasDefaults) {
    const MachineDescription machine = read_machine(MACHINES_DIR "/minimal.ini");
    ASSERT_EQ(machine.axes.size(), 1u);
    EXPECT_FALSE(machine.has_probe);
    EXPECT_EQ(machine.workpiece.kind, WorkpieceDescription::Kind::none);
    EXPECT_GT(machine.axes[0].step, 0.0);
    EXPECT_TRUE(machine.starts_initialized);
}

TEST(DescriptionReader, RichMachineHasEveryKind) {
    const MachineDescription machine = read_machine(MACHINES_DIR "/rich.ini");
    for (int kind = 0; kind <= 4; ++kind) {
        EXPECT_TRUE(std::any_of(machine.axes.begin(), machine.axes.end(), [&](const AxisDescription& found) {
            return static_cast<int>(found.kind) == kind;
        })) << kind;
    }
}

TEST(DescriptionReader, BlocksAndTheirBounds) {
    const MachineDescription machine = parse_machine(
        std::string("[blocks]\nmost=2\nlongest=5\ntotal=7\nrestart=0.5\n[block a b]\ntext= x y \n"
                    "[block empty]\n") +
            axis,
        "m.ini");
    EXPECT_EQ(machine.blocks.most, 2u);
    EXPECT_EQ(machine.blocks.longest, 5u);
    EXPECT_EQ(machine.blocks.total, 7u);
    EXPECT_EQ(machine.blocks.restart, 0.5);
    EXPECT_EQ(machine.blocks.blocks, (std::map<std::string, std::string>{{"a b", "x y"}, {"empty", ""}}));
}

TEST(DescriptionReader, ComplaintsNameFileSectionAndKey) {
    const struct {
        std::string content;
        std::string text;
    } rows[] = {
        {"", "m.ini: there is no [axis NAME] section"},
        {"[machine]\nname=A\n", "m.ini: there is no [axis NAME] section"},
        {"[axis x]\nkind=straight\n",
         "m.ini: [axis x] kind: \"straight\" is none of spindle linear rotary value inactive"},
        {"[axis x]\n", "m.ini: [axis x] kind: \"\" is none of spindle linear rotary value inactive"},
        {axis + std::string("sped=3\n"), "m.ini: [axis x] sped: no such key"},
        {axis + std::string("[motoin]\nspeed=3\n"), "m.ini: [motoin]: no such section"},
        {axis + std::string("speed=fast\n"),
         "m.ini: [axis x] speed: \"fast\" is not a number from 0 to 1000000000"},
        {axis + std::string("speed=nan\n"),
         "m.ini: [axis x] speed: \"nan\" is not a number from 0 to 1000000000"},
        {axis + std::string("speed=-1\n"),
         "m.ini: [axis x] speed: \"-1\" is not a number from 0 to 1000000000"},
        {axis + std::string("speed=10\n"), "m.ini: [axis x] speed: a drive has both, speed and acceleration"},
        {axis + std::string("lower=5\nupper=5\n"), "m.ini: [axis x] upper: must be above lower"},
        {axis + std::string("lower=5\nupper=9\n"),
         "m.ini: [axis x] start: lies outside the limits of travel"},
        {axis + std::string("init=yes\n"), "m.ini: [axis x] init: \"yes\" is not a whole number from 0 to 1"},
        {axis + std::string("step=0\n"), "m.ini: [axis x] values: goes with step=0, and only with that"},
        {axis + std::string("values=1 2\n"), "m.ini: [axis x] values: goes with step=0, and only with that"},
        {axis + std::string("step=0\nvalues=1 two\n"), "m.ini: [axis x] values: \"two\" is not a number"},
        {axis + std::string("spinning=5\n"), "m.ini: [axis x] spinning: needs spin=1"},
        {axis + std::string("speed=1\nacceleration=1\nspin=1\n"),
         "m.ini: [axis x] spin: only a spindle spins"},
        {"[axis c]\nkind=spindle\nspin=1\n", "m.ini: [axis c] spin_speed: must be above 0"},
        {axis + std::string("[probe]\nhighest_probe=4\n"),
         "m.ini: [probe] highest_tip: goes with highest_probe"},
        {axis + std::string("[probe]\nhighest_probe=1001\nhighest_tip=1\n"),
         "m.ini: [probe] highest_probe: \"1001\" is not a whole number from 1 to 1000"},
        {axis + std::string("[probe]\nchanger=1\n"), "m.ini: [probe] changer: needs highest_probe"},
        {axis + std::string("[probe]\nhighest_probe=4\nhighest_tip=1\nloaded=2 1\n"),
         "m.ini: [probe] loaded: there is no such [tip PROBE TIP]"},
        {axis + std::string("[probe]\nhighest_probe=4\nhighest_tip=1\nloaded=none\n"),
         "m.ini: [probe] loaded: \"none\" is not PROBE TIP"},
        {axis + std::string("[tip 1 1]\n"),
         "m.ini: [tip 1 1]: \"1 1\" is not PROBE TIP within the highest of [probe]"},
        {axis + std::string("[probe]\nhighest_probe=4\nhighest_tip=1\n[tip 4 2]\n"),
         "m.ini: [tip 4 2]: \"4 2\" is not PROBE TIP within the highest of [probe]"},
        {axis + std::string("[probe]\nhighest_probe=4\nhighest_tip=1\n[tip 4 1]\ndiameter=-1\n"),
         "m.ini: [tip 4 1] diameter: \"-1\" is not a number from 0 to 1000000000"},
        {axis + std::string("[probe]\nhighest_probe=4\nhighest_tip=1\n[tip 4 1]\n[tip 04 1]\n"),
         "m.ini: [tip 4 1]: this tip is there already"},
        {axis + std::string("[probesystem ]\n"), "m.ini: [probesystem ]: a probe system has a name"},
        {axis + std::string("[probesystem A]\nkind=3\n"),
         "m.ini: [probesystem A] kind: \"3\" is not a whole number from 1 to 2"},
        {axis + std::string("[probesystem A]\nid 0=1 2 3 4 5 6\n"),
         "m.ini: [probesystem A] id 0: an id is a whole number from 1 on"},
        {axis + std::string("[probesystem A]\nid 1=1 2 3 4 5\n"),
         "m.ini: [probesystem A] id 1: there are six numbers"},
        {axis + std::string("[probesystem A]\nid 1=1 2 3 4 5 nan\n"),
         "m.ini: [probesystem A] id 1: that is no number of a head"},
        {axis + std::string("[probesystem A]\nloaded=1\n"),
         "m.ini: [probesystem A] loaded: there is no such id"},
        {axis + std::string("[probesystem A]\nid 1=1 2 3 4 5 6\nloaded=1\n"
                            "[probesystem B]\nid 1=1 2 3 4 5 6\nloaded=1\n"),
         "m.ini: [probesystem B] loaded: \"A\" is loaded already"},
        {axis + std::string("[wobble]\nnumbers=1 2 3\n"), "m.ini: [wobble] numbers: there are six numbers"},
        {axis + std::string("[wobble]\n"), "m.ini: [wobble] numbers: there are six numbers"},
        {"[axis c]\nkind=spindle\nlower=0\nupper=3\n", "m.ini: [axis c] lower: a spindle has no limits"},
        {"[axis speed]\nkind=linear\n",
         "m.ini: [axis speed]: \"speed\" is a name that the machine itself uses"},
        {"[axis x y]\nkind=linear\n",
         "m.ini: [axis x y]: an axis name has no blanks, quotes or any of = ; + -"},
        {axis + std::string("[workpiece]\nkind=cube\n"),
         "m.ini: [workpiece] kind: \"cube\" is none of ring cylinder cone sphere plane"},
        {axis + std::string("[workpiece]\nkind=ring\nharmonics=2:0.1\n"),
         "m.ini: [workpiece] harmonics: \"2:0.1\" is not WAVES:AMPLITUDE:PHASE"},
        {axis + std::string("[workpiece]\nkind=ring\nspindle=c\n"),
         "m.ini: [workpiece] spindle: \"c\" is no turning axis"},
        {axis + std::string("[workpiece]\nkind=plane\nnormal_z=0\n"),
         "m.ini: [workpiece] normal_z: the normal has no direction"},
        {axis + std::string("[workpiece]\nkind=plane\nradius=3\n"), "m.ini: [workpiece] radius: no such key"},
        {axis + std::string("[axis x]\nkind=linear\n"), "m.ini: Section [axis x] seen twice"},
    };
    for (const auto& row : rows) EXPECT_EQ(complaint(row.content), row.text);
}

TEST(DescriptionReader, AMissingFileIsNamed) {
    try {
        read_machine("no/such.ini");
        FAIL();
    } catch (const DescriptionError& error) {
        EXPECT_STREQ(error.what(), "no/such.ini: there is no such file");
    }
}

}  // namespace
}  // namespace zendrix::sim
