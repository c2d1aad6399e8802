// Scripts from outside: played, and only checked.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

using Json = nlohmann::json;

class ScriptTest : public ::testing::Test {
protected:
    std::string write(const std::string& name, const std::string& text) const {
        const std::string file = path(name);
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }
    std::string path(const std::string& name) const { return (host.directory / name).string(); }

    double value(const std::string& axis) const {
        return Json::parse(host.run(machine, {"--format", "json", "get", axis}).out)[0]["value"]
            .get<double>();
    }

    // The status, and that standard error says it.
    void expect_stop(const std::string& file, int status, const std::string& says) const {
        const ProcessResult result = host.run(machine, {"run", file});
        EXPECT_EQ(result.exit_status, status) << result.err;
        EXPECT_NE(result.err.find(says), std::string::npos) << result.err;
    }

    ProcessResult check(const std::string& file) const { return host.run(machine, {"run", "--check", file}); }

    Host host;
    Simulator machine;
};

TEST_F(ScriptTest, PlaysItsLinesOnOneConnection) {
    const std::string file = write("part.zx",
                                   "\xef\xbb\xbf# a part\r\n"
                                   "move x=12 \"y=-3\"   # beside it\r\n"
                                   "\r\n"
                                   "zxhost set 'speed=20'\r\n"
                                   "get x speed --format json");
    const ProcessResult result = host.run(machine, {"run", file});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const std::size_t json = result.out.find("[\n");
    ASSERT_NE(json, std::string::npos) << result.out;
    const Json values = Json::parse(result.out.substr(json));
    EXPECT_EQ(values[0]["value"], 12.0);
    EXPECT_EQ(values[1]["value"], 20.0);
}

TEST_F(ScriptTest, StopsAtTheFirstErrorAndNamesItsPlace) {
    const std::string file = write("part.zx", "move x=1\nmove q=2\nmove x=3\n");
    expect_stop(file, 1, "zxhost: " + file + ":2: move: ");
    EXPECT_EQ(value("x"), 1.0);
    const std::string usage = write("usage.zx", "\n\nmove x\nmove x=9\n");
    expect_stop(usage, 2, "zxhost: " + usage + ":3: ");
    EXPECT_EQ(value("x"), 1.0);
}

TEST_F(ScriptTest, AScriptPlaysAnotherAndBothPlacesAreNamed) {
    const std::string inner = write("inner.zx", "move y=4\nget q\n");
    const std::string outer = write("outer.zx", "move x=2\nrun '" + inner + "'\nmove x=5\n");
    expect_stop(outer, 1, outer + ":2: " + inner + ":2: ");
    EXPECT_EQ(value("y"), 4.0);
    EXPECT_EQ(value("x"), 2.0);
}

TEST_F(ScriptTest, CtrlCStopsTheActionAndTheScript) {
    const Simulator slow({"--speed", "1"});
    const std::string file = write("part.zx", "move z=0\nmove x=5\n");
    const auto process = host.start(slow, {"--progress", "run", file});
    ASSERT_TRUE(process->wait_for("move: z"));
    process->interrupt();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.err.find("zxhost: " + file + ":1: move: aborted"), std::string::npos) << result.err;
}

TEST_F(ScriptTest, CtrlCThatEndsAVerbWellStopsTheScriptToo) {
    const std::string file = write("part.zx", "events\nmove x=5\n");
    const auto process = host.start(machine, {"run", file});
    ASSERT_TRUE(process->wait_for("Ctrl-C ends"));
    ASSERT_EQ(host.run(machine, {"move", "y=1"}).exit_status, 0);
    ASSERT_TRUE(process->wait_for("movement: end"));  // the verb watches for Ctrl-C by now
    process->interrupt();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.err.find(file + ":1: aborted"), std::string::npos) << result.err;
    EXPECT_EQ(value("x"), 0.0);
}

TEST_F(ScriptTest, TheVerbsHaveHelpWithAnExample) {
    for (const char* verb : {"run", "shell"}) {
        const ProcessResult help = host.run({verb, "--help"});
        EXPECT_EQ(help.exit_status, 0);
        EXPECT_NE(help.out.find("example: zxhost "), std::string::npos) << help.out;
    }
}

TEST_F(ScriptTest, ALostMachineEndsItWithItsStatus) {
    const std::string file = write("part.zx", "info\n");
    EXPECT_EQ(host.run({"--host", "127.0.0.1", "--port", "1", "run", file}).exit_status, 3);
}

TEST_F(ScriptTest, HostileScriptsAreAnsweredClearly) {
    expect_stop(path("none.zx"), 2, "none.zx can't be read");
    expect_stop(host.directory.path(), 2, "can't be read");
    using namespace std::string_literals;
    expect_stop(write("binary.zx",
                      "get x\n\x7f"
                      "ELF\0\1\2\n"s),
                2, "binary.zx:2: this is no line");
    expect_stop(write("huge.zx", std::string(3000000, 'x')), 2, "huge.zx:1: this line is longer than");
    expect_stop(write("quote.zx", "get x\nget 'x\n"), 2, "quote.zx:2: a quote is not closed");
    const std::string self = path("self.zx");
    expect_stop(write("self.zx", "run '" + self + "'\nrun '" + self + "'\n"), 2,
                self + ":1: the script " + self + " plays itself");
    for (int i = 0; i < 20; ++i)
        write("deep" + std::to_string(i), "run '" + path("deep" + std::to_string(i + 1)) + "'\n");
    expect_stop(path("deep0"), 2, "more than 16 scripts play each other");
}

TEST_F(ScriptTest, CheckTellsEveryWrongLineAndMovesNothing) {
    const std::string file = write("part.zx",
                                   "move x=12\n"     // good
                                   "move q=1 x=3\n"  // no such axis
                                   "move x=1000\n"   // too far
                                   "mvoe x=1\n"      // no such verb
                                   "move x=a\n"      // no number
                                   "set speed=20 spood=1\n"
                                   "scan z=25 --data x,v\n"
                                   "circle --centre 0 0 100 --radius 5000\n"
                                   "axes w\n"
                                   "get x y\n");
    const ProcessResult result = check(file);
    EXPECT_EQ(result.exit_status, 1) << result.err;
    for (const char* line :
         {":2: this machine has no axis 'q'\n", ":3: x = 1000 is beyond its travel from ",
          ":4: there is no verb or option 'mvoe'\n", ":5: 'x=a': 'a' is not a number\n",
          ":6: this machine has no axis or value 'spood'\n", ":7: this machine has no axis 'v'\n",
          ":8: x = 5000 is beyond its travel from ", ":9: ", ": 10 lines to run, 8 wrong\n"})
        EXPECT_NE(result.out.find(file + line), std::string::npos) << line << " in: " << result.out;
    EXPECT_EQ(result.out.find(file + ":1: "), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find(file + ":10: "), std::string::npos) << result.out;
    EXPECT_EQ(value("x"), 0.0);
    EXPECT_EQ(value("speed"), 50.0);
}

TEST_F(ScriptTest, CheckSaysWhatItCannotKnow) {
    const std::string file = write("part.zx", "zero x=10\nmove x+=3\n");
    const ProcessResult result = check(file);
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_NE(result.out.find(file + ":2: not known: whether x+=3 stays within its travel"),
              std::string::npos)
        << result.out;
    EXPECT_NE(result.out.find(": 2 lines to run, 0 wrong, 1 thing that only the run will tell\n"),
              std::string::npos)
        << result.out;
}

TEST_F(ScriptTest, CheckLooksIntoScriptsAndWaitsForNothing) {
    const std::string inner = write("inner.zx", "move q=1\n");
    const std::string file = write(
        "part.zx", "run '" + inner + "'\nevents\nwatch x\nrun none.zx\nrun '" + path("part.zx") + "'\n");
    const ProcessResult result = check(file);
    EXPECT_EQ(result.exit_status, 1) << result.err;
    EXPECT_NE(result.out.find(file + ":1: " + inner + ":1: this machine has no axis 'q'\n"),
              std::string::npos)
        << result.out;
    EXPECT_NE(result.out.find(file + ":4: the file none.zx can't be read"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find(file + ":5: the script " + file + " plays itself\n"), std::string::npos)
        << result.out;
    EXPECT_NE(result.out.find(": 5 lines to run, 3 wrong\n"), std::string::npos) << result.out;
}

TEST_F(ScriptTest, CheckWritesNoFiles) {
    const std::string kept = write("kept.csv", "precious");
    const std::string file =
        write("part.zx", "scan z=25 --csv '" + kept + "'\nscan verify '" + path("later.csv") +
                             "'\nsession --out '" + path("out") + "' --centre 10 -5 20 --radius 25\n");
    const ProcessResult result = check(file);
    EXPECT_EQ(result.exit_status, 0) << result.out << result.err;
    std::ifstream in(kept);
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), "precious");
    EXPECT_FALSE(std::filesystem::exists(path("out")));
}

TEST_F(ScriptTest, CheckAnswersInJsonToo) {
    const std::string file = write("part.zx", "move q=1\nzero x=10\nmove x+=1\n");
    const ProcessResult result = host.run(machine, {"--format", "json", "run", "--check", file});
    EXPECT_EQ(result.exit_status, 1);
    const Json report = Json::parse(result.out, nullptr, false);
    EXPECT_EQ(report["lines"], 3);
    ASSERT_EQ(report["wrong"].size(), 1u) << result.out;
    EXPECT_EQ(report["wrong"][0]["line"], 1);
    ASSERT_EQ(report["unknown"].size(), 1u) << result.out;
    EXPECT_EQ(report["unknown"][0]["line"], 3);
}

TEST_F(ScriptTest, TheScriptOfThePageIsGoodAndPlays) {
    std::ifstream in(ZX_HOST_TOOL_PAGE);
    std::ostringstream page;
    page << in.rdbuf();
    const std::string begin = "```zx\n";
    const std::size_t at = page.str().find(begin);
    ASSERT_NE(at, std::string::npos);
    const std::size_t start = at + begin.size();
    const std::string file =
        write("part.zx", page.str().substr(start, page.str().find("```", start) - start));
    const ProcessResult checked = check(file);
    EXPECT_EQ(checked.exit_status, 0) << checked.out;
    EXPECT_NE(checked.out.find(": 6 lines to run, 0 wrong\n"), std::string::npos) << checked.out;
    const ProcessResult played = host.run(machine, {"run", file});
    EXPECT_EQ(played.exit_status, 0) << played.err;
    EXPECT_NEAR(value("z"), 350.0, 1e-3);
}

}  // namespace
}  // namespace zxhost_test
