// The shell as a person at a terminal sees it.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "terminal_process.h"
#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

using test_support::Screen;
using test_support::TerminalProcess;

const std::string prompt = "zxhost>";

class ShellPosix : public ::testing::Test {
protected:
    std::unique_ptr<TerminalProcess> shell(const Simulator& machine, unsigned short columns = 80,
                                           const std::string& terminal = "xterm") {
        Words words = host.connection(machine);
        words.push_back("shell");
        auto process = std::make_unique<TerminalProcess>(
            ZX_HOST_PROGRAM, words,
            TerminalProcess::Environment{{"ZENDRIX_ERRORLOG", (host.directory / "error.log").string()},
                                         {"ZENDRIX_TRACE", (host.directory / "trace.log").string()},
                                         {"XDG_STATE_HOME", host.directory.path()},
                                         {"HOME", host.directory.path()},
                                         {"TMPDIR", host.directory.path()},
                                         {"TERM", terminal}},
            columns);
        EXPECT_TRUE(process->wait_for_last_line(prompt)) << process->text();
        return process;
    }

    // Drops what was typed; keys that follow too soon would go with it.
    static void clear_line(TerminalProcess& shell) {
        shell.type("\x03");
        EXPECT_TRUE(shell.wait_for_last_line(prompt)) << shell.text();
    }

    static void leave(TerminalProcess& shell) {
        shell.type("exit\r");
        EXPECT_EQ(shell.wait(), 0) << shell.text();
    }

    Host host;
};

std::size_t count(const Screen& screen, const std::string& part) {
    const auto lines = screen.lines();
    return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(part) != std::string::npos;
    }));
}

TEST_F(ShellPosix, VerbsRunOnOneConnectionAndErrorsDoNotEndIt) {
    const Simulator machine;
    const auto person = shell(machine);
    EXPECT_TRUE(person->wait_for_line("help shows the verbs; exit or Ctrl-D leaves"));
    person->type("move x=12 y=-3\r");
    EXPECT_TRUE(person->wait_for_line("x     12.0000  mm")) << person->text();
    person->type("zxhost mvoe x=1 # a word too odd\r");
    EXPECT_TRUE(person->wait_for_line("zxhost: there is no verb or option 'mvoe'")) << person->text();
    person->type("get 'x\r");
    EXPECT_TRUE(person->wait_for_line("zxhost: a quote is not closed: ' is missing")) << person->text();
    person->type("get \"x\" --format json\r");
    EXPECT_TRUE(person->wait_until([](const Screen& s) { return count(s, "\"value\": 12.0") == 1; }));
    leave(*person);
}

TEST_F(ShellPosix, AnEventInTheMiddleOfTypingTearsNothing) {
    const Simulator machine;
    const auto person = shell(machine);
    person->type("get y");
    ASSERT_TRUE(person->wait_for_last_line(prompt + " get y"));
    ASSERT_EQ(host.run(machine, {"move", "x=5"}).exit_status, 0);
    ASSERT_TRUE(person->wait_for_line("event: movement: end")) << person->text();
    ASSERT_TRUE(person->wait_for_last_line(prompt + " get y")) << person->text();
    EXPECT_EQ(count(person->screen(), "get y"), 1u) << person->text();
    EXPECT_EQ(count(person->screen(), "event: movement: begin"), 1u) << person->text();
    person->type(" x\r");
    EXPECT_TRUE(person->wait_for_line("x     5.0000  mm")) << person->text();
    leave(*person);
}

TEST_F(ShellPosix, ALineLongerThanTheScreenSurvivesAnEventToo) {
    const Simulator machine;
    const auto person = shell(machine, 30);
    person->type("get x y z c speed scanspeed scanstep init");
    ASSERT_TRUE(person->wait_for_last_line("speed scanstep init")) << person->text();
    ASSERT_EQ(host.run(machine, {"move", "x=5"}).exit_status, 0);
    ASSERT_TRUE(person->wait_for_line("event: movement: end")) << person->text();
    ASSERT_TRUE(person->wait_for_last_line("speed scanstep init")) << person->text();
    EXPECT_EQ(count(person->screen(), "zxhost> get x y z c speed scan"), 1u) << person->text();
    EXPECT_EQ(count(person->screen(), prompt), 1u) << person->text();
    clear_line(*person);
    leave(*person);
}

TEST_F(ShellPosix, TabCompletesVerbsOptionsAndTheMachinesNames) {
    const Simulator machine;
    const auto person = shell(machine);
    person->type("mo\t");
    ASSERT_TRUE(person->wait_for_last_line(prompt + " move")) << person->text();
    person->type("z\t");
    ASSERT_TRUE(person->wait_for_last_line(prompt + " move z=")) << person->text();
    person->type("20 \t");
    ASSERT_TRUE(person->wait_for_line("c=  x=  y=  z=")) << person->text();
    ASSERT_TRUE(person->wait_for_last_line(prompt + " move z=20")) << person->text();
    person->type("--pro\t");
    ASSERT_TRUE(person->wait_for_last_line(prompt + " move z=20 --progress")) << person->text();
    clear_line(*person);
    leave(*person);
}

TEST_F(ShellPosix, CtrlCInAMotionStopsTheMachineAndTheShellLives) {
    const Simulator slow({"--speed", "1"});
    const auto person = shell(slow);
    person->type("move z=0\r");
    ASSERT_TRUE(person->wait_until([](const Screen& s) { return count(s, "move: z 2") > 0; }))
        << person->text();
    person->type("\x03");
    ASSERT_TRUE(person->wait_for_line("zxhost: move: aborted")) << person->text();
    ASSERT_TRUE(person->wait_for_last_line(prompt)) << person->text();
    const std::string first = host.run(slow, {"get", "z"}).out;
    EXPECT_EQ(host.run(slow, {"get", "z"}).out, first);
    EXPECT_EQ(first.find(" 0.0000"), std::string::npos) << first;
    person->type("get init\r");
    EXPECT_TRUE(person->wait_for_line("init  1.0000")) << person->text();
    leave(*person);
}

TEST_F(ShellPosix, CtrlCClearsTheLineAndCtrlDLeaves) {
    const Simulator machine;
    const auto person = shell(machine);
    person->type("move x=100");
    ASSERT_TRUE(person->wait_for_last_line(prompt + " move x=100"));
    person->type("\x03");
    ASSERT_TRUE(person->wait_for_last_line(prompt)) << person->text();
    person->type("get x\r");
    ASSERT_TRUE(person->wait_for_line("x     0.0000  mm")) << person->text();
    ASSERT_TRUE(person->wait_for_last_line(prompt));
    person->type("\x04");
    EXPECT_EQ(person->wait(), 0);
}

TEST_F(ShellPosix, LinesComeBackAlsoInTheNextShell) {
    const Simulator machine;
    {
        const auto person = shell(machine);
        person->type("get speed\r");
        ASSERT_TRUE(person->wait_for_line("speed  50.0000  mm/s")) << person->text();
        leave(*person);
    }
    const auto person = shell(machine);
    person->type("\x1b[A\x1b[A");
    EXPECT_TRUE(person->wait_for_last_line(prompt + " get speed")) << person->text();
    clear_line(*person);
    leave(*person);
}

TEST_F(ShellPosix, TheHistoryIsBounded) {
    const std::string directory = (host.directory / "m2zendrix").string();
    std::filesystem::create_directories(directory);
    {
        std::ofstream history(directory + "/shell-history");
        history << "_HiStOrY_V2_\n";
        for (int i = 0; i < 5000; ++i) history << "get\\040x\\040#" << i << "\n";
    }
    const Simulator machine;
    const auto person = shell(machine);
    person->type("get speed\r");
    ASSERT_TRUE(person->wait_for_line("speed  50.0000  mm/s")) << person->text();
    leave(*person);
    std::ifstream history(directory + "/shell-history");
    int lines = 0;
    for (std::string line; std::getline(history, line);) ++lines;
    EXPECT_LE(lines, 1001);
    EXPECT_GT(lines, 900);
}

TEST_F(ShellPosix, ALostMachineIsToldOnceAndCanComeBack) {
    Simulator machine;
    const std::string port = machine.port();
    const auto person = shell(machine);
    machine.process().kill();
    ASSERT_TRUE(person->wait_for_line("zxhost: the connection to the machine is lost")) << person->text();
    ASSERT_TRUE(person->wait_for_last_line("zxhost (no machine)>")) << person->text();
    person->type("get x\r");
    ASSERT_TRUE(person->wait_for_line("zxhost: there is no connection to a machine")) << person->text();
    person->type("reconnect\r");
    ASSERT_TRUE(person->wait_for_line("zxhost: no connection to a machine at 127.0.0.1:" + port))
        << person->text();
    EXPECT_EQ(count(person->screen(), "is lost"), 1u) << person->text();
    Process again(ZX_SIMULATOR_PROGRAM,
                  {"--port", port, "--machine", machine.machine_file(), "--speed", "max"});
    ASSERT_TRUE(again.wait_for("\n"));
    person->type("reconnect\r");
    ASSERT_TRUE(person->wait_for_last_line(prompt)) << person->text();
    person->type("get speed\r");
    ASSERT_TRUE(person->wait_for_line("speed  50.0000  mm/s")) << person->text();
    leave(*person);
}

TEST_F(ShellPosix, AMachineLostInAMotionIsToldOnce) {
    Simulator slow({"--speed", "0.1"});
    const auto person = shell(slow);
    person->type("move z=0\r");
    ASSERT_TRUE(person->wait_until([](const Screen& s) { return count(s, "move: z") > 0; }));
    slow.process().kill();
    ASSERT_TRUE(person->wait_for_last_line("zxhost (no machine)>")) << person->text();
    EXPECT_EQ(count(person->screen(), "lost"), 1u) << person->text();
    EXPECT_EQ(count(person->screen(), "connect again with: reconnect"), 1u) << person->text();
    leave(*person);
}

TEST_F(ShellPosix, ATerminalWithoutAbilitiesTakesPlainLines) {
    const Simulator machine;
    const auto person = shell(machine, 80, "dumb");
    person->type("get speed\r");
    EXPECT_TRUE(person->wait_for_line("speed  50.0000  mm/s")) << person->text();
    leave(*person);
}

}  // namespace
}  // namespace zxhost_test
