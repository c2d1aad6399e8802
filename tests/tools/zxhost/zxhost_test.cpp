// zxhost from outside: its output, its files, its exit status.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

using Json = nlohmann::json;

// One machine that is as fast as the processor, for tests that leave it as they like.
class ZxhostTest : public ::testing::Test {
protected:
    ProcessResult run(const Words& words) { return host.run(machine, words); }

    Json json(Words words) {
        words.insert(words.begin(), {"--format", "json"});
        const ProcessResult result = run(words);
        EXPECT_EQ(result.exit_status, 0) << result.err;
        return Json::parse(result.out, nullptr, false);
    }

    // The status, and that standard error says all of these and standard output nothing.
    void expect_refusal(const Words& words, int status, const std::vector<std::string>& says) {
        const ProcessResult result = run(words);
        EXPECT_EQ(result.exit_status, status) << result.err;
        EXPECT_EQ(result.out, "");
        for (const std::string& text : says)
            EXPECT_NE(result.err.find(text), std::string::npos) << text << " in: " << result.err;
    }

    Simulator machine;
    Host host;
};

TEST_F(ZxhostTest, InfoTellsWhatTheMachineIs) {
    const Json info = json({"info"});
    EXPECT_EQ(info["name"], "Round 4");
    EXPECT_EQ(info["revision"], "2.4");
    EXPECT_EQ(info["serial"], "SIM-0004");
    EXPECT_EQ(info["simulated"], true);
    EXPECT_EQ(info["initialized"], true);
    EXPECT_EQ(info["connection"], "127.0.0.1:" + machine.port());
    EXPECT_NE(info["commands"].dump().find("\"scancircle\""), std::string::npos);
    const ProcessResult table = run({"info"});
    EXPECT_NE(table.out.find("Round 4"), std::string::npos);
    EXPECT_NE(table.out.find("controller"), std::string::npos);
}

TEST_F(ZxhostTest, AxesShowsFlagsInWords) {
    const Json axes = json({"axes"});
    ASSERT_EQ(axes.size(), 4u);
    EXPECT_EQ(axes[0]["axis"], "c");
    EXPECT_EQ(axes[0]["is"], Json({"turning", "driven", "rotary", "keypad"}));
    EXPECT_EQ(axes[0]["flags"], 2 + 8 + 32 + 64);
    EXPECT_EQ(json({"axes", "x"})[0]["number2"], 200.0);
    const ProcessResult table = run({"axes", "z"});
    EXPECT_NE(table.out.find("350.0000"), std::string::npos) << table.out;
    EXPECT_EQ(table.out.find("\nx "), std::string::npos) << table.out;
    expect_refusal({"axes", "q"}, 1, {"no axis 'q'", "zxhost axes"});
}

TEST_F(ZxhostTest, GetReadsInTheOrderAsked) {
    const Json values = json({"get", "z", "speed", "x"});
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(values[0], Json({{"axis", "z"}, {"value", 300.0}, {"unit", "mm"}}));
    EXPECT_EQ(values[1], Json({{"axis", "speed"}, {"value", 50.0}, {"unit", "mm/s"}}));
    EXPECT_EQ(run({"get", "speed"}).out,
              "axis     value  unit\n-----  -------  ----\nspeed  50.0000  mm/s\n");
}

TEST_F(ZxhostTest, SetWritesAndShows) {
    EXPECT_EQ(json({"set", "speed=20", "scanstep=0.5"})[1]["value"], 20.0);
    EXPECT_EQ(json({"get", "speed"})[0]["value"], 20.0);
}

TEST_F(ZxhostTest, MoveTakesEachFormOfTarget) {
    EXPECT_EQ(json({"move", "x=12.5", "y=-3"})[0], Json({{"axis", "x"}, {"value", 12.5}, {"unit", "mm"}}));
    EXPECT_EQ(json({"move", "x+=-2.5"})[0]["value"], 10.0);
    EXPECT_EQ(json({"move", "x=max", "y=min"})[0]["value"], 200.0);
    EXPECT_EQ(json({"get", "y"})[0]["value"], -100.0);
}

TEST_F(ZxhostTest, HomeAndCircleTravel) {
    json({"circle", "--centre", "0", "0", "100", "--radius", "20", "--sweep", "90", "c=45"});
    const Json values = json({"get", "x", "y", "z", "c"});
    EXPECT_NEAR(values[0]["value"].get<double>(), 0.0, 1e-3);
    EXPECT_NEAR(values[1]["value"].get<double>(), 20.0, 1e-3);
    EXPECT_NEAR(values[2]["value"].get<double>(), 100.0, 1e-3);
    EXPECT_NEAR(values[3]["value"].get<double>(), 45.0, 1e-3);
    json({"home"});
    EXPECT_EQ(json({"get", "z"})[0]["value"], 100.0);
}

TEST_F(ZxhostTest, ZeroStopsAtTheWorkpiece) {
    json({"move", "x=60", "y=-5", "c=0"});
    json({"move", "z=20"});
    const double x = json({"zero", "x=10"})[0]["value"];
    EXPECT_NEAR(x, 35.02, 0.05);
    json({"move", "x=60"});
    expect_refusal({"zero", "x=50"}, 1, {"movezero: probe: no contact", "nearer to the workpiece"});
}

TEST_F(ZxhostTest, ScanAlongALineGivesPoints) {
    json({"move", "x=35", "y=-5", "c=0"});
    json({"move", "z=15"});
    const Json scan = json({"scan", "z=25", "--data", "x,z,deflection"});
    EXPECT_EQ(scan["columns"], Json({"x", "z", "deflection"}));
    EXPECT_EQ(scan["units"], Json({"mm", "mm", "mm"}));
    ASSERT_GT(scan["points"].size(), 150u);
    EXPECT_EQ(scan["points"][0].size(), 3u);
    const ProcessResult table = run({"scan", "z=20"});
    EXPECT_NE(table.out.find("x [mm]"), std::string::npos);
    EXPECT_NE(table.out.find("time [s]"), std::string::npos);
}

TEST_F(ZxhostTest, ScanCircleWritesWholePointsToItsFile) {
    const std::string file = (host.directory / "ring.csv").string();
    json({"move", "c=0", "x=35", "y=-5"});
    json({"move", "z=20"});
    const Json result = json({"scan", "circle", "--centre", "10,-5,20", "--radius", "25", "--csv", file});
    const auto count = result[0]["points"].get<std::size_t>();
    EXPECT_GT(count, 3000u);
    std::ifstream in(file);
    std::size_t points = 0;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#' || line[0] == 'x') continue;
        ++points;
        EXPECT_EQ(std::count(line.begin(), line.end(), ','), 3) << line;
    }
    EXPECT_EQ(points, count);
}

TEST_F(ZxhostTest, ErrorsOfTheMachineNameTheThingAndTheWayOut) {
    expect_refusal({"move", "q=1"}, 1, {"zxhost: move: ", "axis", "zxhost axes"});
    expect_refusal({"get", "q\"r\\"}, 1, {"zxhost: get: ", "zxhost axes"});
    expect_refusal({"move", "x=1000"}, 1, {"argument out of range", "zxhost axes"});
    expect_refusal({"scan", "circle", "--centre", "0", "0", "20", "--radius", "50"}, 1, {"scancircle: "});
    expect_refusal({"scan", "x=1", "--data", "nonsense"}, 1, {"scandata: "});
    expect_refusal({"init", "q"}, 1, {"init: "});
}

TEST_F(ZxhostTest, WrongUsageIsRefusedBeforeTheMachineIsAsked) {
    expect_refusal({"move", "x=nan"}, 2, {"'x=nan'", "finite"});
    expect_refusal({"move", "x=1", "x=2"}, 2, {"'x'", "twice"});
    expect_refusal({"move"}, 2, {"TARGET", "zxhost move --help"});
    expect_refusal({"get"}, 2, {"AXIS"});
    expect_refusal({"scan"}, 2, {"TARGET"});
    expect_refusal({"circle", "--centre", "0", "0"}, 2, {"--radius"});
    expect_refusal({"circle", "--centre", "0", "nan", "--radius", "1"}, 2, {"finite"});
    expect_refusal({"circle", "--centre", "0", "0", "--radius", "-1"}, 2, {"radius"});
    expect_refusal({"fly"}, 2, {"fly"});
    expect_refusal({}, 2, {"zxhost --help"});
    expect_refusal({"--format", "xml", "info"}, 2, {"xml"});
    expect_refusal({"--trace", "9", "info"}, 2, {"--trace"});
    expect_refusal({"--plugin", "no_such.so", "info"}, 2, {"no_such.so", "--plugin FILE"});
    expect_refusal({"scan", "x=1", "--csv", "/no/such/dir/a.csv"}, 2, {"/no/such/dir/a.csv"});
    expect_refusal({"session", "--truth", "/no/such.ini"}, 2, {"/no/such.ini"});
    expect_refusal({"session"}, 2, {"--truth"});
}

TEST_F(ZxhostTest, StrangeTextsReachTheMachineWholeAndComeBackHarmless) {
    expect_refusal({"get", std::string(30000, 'q')}, 1, {"zxhost: get: "});
    expect_refusal({"get", "two\r\n0001\tlines \"quoted\" \\"}, 1, {"zxhost: get: "});
    expect_refusal({"move", "\x1b[2J=1"}, 1, {"zxhost: move: "});
    expect_refusal({"\x1b[2J"}, 2, {"'\\x1b[2J'"});
    EXPECT_EQ(json({"get", "x"})[0]["value"], 0.0);
}

TEST_F(ZxhostTest, AMachineThatIsNotInitializedSaysHowToBecomeIt) {
    const Simulator fresh({"--speed", "max"}, Edits{});
    const ProcessResult refused = host.run(fresh, {"move", "x=1"});
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_NE(refused.err.find("machine: not initialized"), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("zxhost init"), std::string::npos);
    EXPECT_EQ(host.run(fresh, {"init"}).exit_status, 0);
    EXPECT_EQ(host.run(fresh, {"move", "x=1"}).exit_status, 0);
}

TEST_F(ZxhostTest, AConfigurationDirectoryServesTooAndNothingPrivateStays) {
    host.directory.file("lab.ini", "[connection]\nhost=127.0.0.1\nport=" + machine.port() + "\n");
    const ProcessResult result = host.run({"--config", host.directory.path(), "--name", "lab", "get", "x"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(run({"get", "x"}).exit_status, 0);
    for (const auto& entry : std::filesystem::directory_iterator(host.directory.path()))
        EXPECT_NE(entry.path().filename().string().substr(0, 7), "zxhost-") << entry.path();
}

TEST_F(ZxhostTest, LinesShowsWhatTheMachineWrites) {
    const ProcessResult result = run({"--lines", "move", "x=1"});
    EXPECT_NE(result.err.find("0000\tevent \"movement: end\""), std::string::npos) << result.err;
    EXPECT_EQ(run({"move", "x=2"}).err, "");
}

TEST_F(ZxhostTest, EventsShowsWhatHappensElsewhere) {
    const auto listener = host.start(machine, {"events", "--count", "2", "--format", "json"});
    ASSERT_TRUE(listener->wait_for("listening to"));
    EXPECT_EQ(run({"move", "x=5"}).exit_status, 0);
    const ProcessResult result = listener->wait();
    EXPECT_EQ(result.exit_status, 0);
    std::istringstream lines(result.out);
    std::vector<std::string> texts;
    for (std::string line; std::getline(lines, line);) texts.push_back(Json::parse(line)["text"]);
    EXPECT_EQ(texts, (std::vector<std::string>{"movement: begin", "movement: end"}));
}

TEST_F(ZxhostTest, EventsEndsOnCtrlCAndByTheClock) {
    const auto listener = host.start(machine, {"events"});
    ASSERT_TRUE(listener->wait_for("Ctrl-C ends"));
    EXPECT_EQ(run({"move", "x=5"}).exit_status, 0);
    ASSERT_TRUE(listener->wait_for("movement: end"));
    listener->interrupt();
    EXPECT_EQ(listener->wait().exit_status, 0);
    EXPECT_EQ(run({"events", "--for", "0.05"}).exit_status, 0);
}

TEST(ZxhostHelp, EveryVerbHasHelpWithAnExample) {
    const Host host;
    const std::string overview = host.run({"--help"}).out;
    for (const char* verb : {"info", "axes", "get", "set", "init", "move", "zero", "home", "circle", "scan",
                             "events", "session"}) {
        EXPECT_NE(overview.find(verb), std::string::npos) << verb;
        const ProcessResult help = host.run({verb, "--help"});
        EXPECT_EQ(help.exit_status, 0);
        EXPECT_NE(help.out.find("example: zxhost "), std::string::npos) << help.out;
    }
    EXPECT_NE(host.run({"scan", "circle", "--help"}).out.find("example: zxhost scan circle"),
              std::string::npos);
}

TEST(ZxhostConnection, NoMachineIsAStatusOfItsOwn) {
    const Host host;
    const ProcessResult result = host.run({"--host", "127.0.0.1", "--port", "1", "info"});
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("127.0.0.1:1"), std::string::npos) << result.err;
}

TEST(ZxhostConnection, AMachineLostInAMotionEndsWithThatStatus) {
    Simulator slow({"--speed", "0.1"});
    const Host host;
    const auto process = host.start(slow, {"--progress", "move", "z=0"});
    ASSERT_TRUE(process->wait_for("move: z"));
    slow.process().kill();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_NE(result.err.find("zxhost: fatal: machine connection lost"), std::string::npos) << result.err;
}

TEST(ZxhostInterrupt, CtrlCAbortsTheMotionAndWaitsForItsEnd) {
    const Simulator slow({"--speed", "1"});
    const Host host;
    const auto process = host.start(slow, {"--progress", "--lines", "move", "z=0"});
    ASSERT_TRUE(process->wait_for("move: z"));
    process->interrupt();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.err.find("zxhost: move: aborted"), std::string::npos) << result.err;
    const auto where = [&] {
        return Json::parse(host.run(slow, {"--format", "json", "get", "z"}).out)[0]["value"].get<double>();
    };
    const double z = where();
    EXPECT_GT(z, 1.0);
    EXPECT_EQ(where(), z);
}

TEST(ZxhostInterrupt, CtrlCInAScanKeepsThePointsThatCame) {
    const Simulator slow({"--speed", "1"}, {initialized[0],
                                            {"[axis x]", "[axis x]\nstart=35"},
                                            {"[axis y]", "[axis y]\nstart=-5"},
                                            {"start=300", "start=20"}});
    const Host host;
    const std::string file = (host.directory / "part.csv").string();
    const auto process = host.start(slow, {"--progress", "scan", "circle", "--centre", "10", "-5", "20",
                                           "--radius", "25", "--csv", file});
    const bool scanning = process->wait_for("scancircle: ");
    process->interrupt();
    const ProcessResult result = process->wait();
    ASSERT_TRUE(scanning) << result.err;
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.err.find("scancircle: aborted"), std::string::npos) << result.err;
    std::ifstream in(file);
    std::string line;
    int lines = 0;
    while (std::getline(in, line)) ++lines;
    EXPECT_GT(lines, 4);
}

TEST(ZxhostInterrupt, ASecondCtrlCLeavesAtOnce) {
    const Simulator very_slow({"--speed", "0.01"});
    const Host host;
    const auto process = host.start(very_slow, {"--progress", "move", "z=0"});
    ASSERT_TRUE(process->wait_for("move: z"));
    process->interrupt();
    ASSERT_TRUE(process->wait_for("aborting"));
    process->interrupt();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.err.find("aborted"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace zxhost_test
