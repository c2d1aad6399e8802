// zendrix-sim as a black box.
#include <gtest/gtest.h>

#include <string>

#include "net/lineclient.h"
#include "net/missing_line.h"
#include "test_process.h"

namespace zendrix::sim {
namespace {

using test_support::Process;
using test_support::ProcessResult;
using test_support::run_process;

struct Simulator {
    explicit Simulator(const std::vector<std::string>& arguments = {}) : process(ZENDRIX_SIM, arguments) {
        EXPECT_TRUE(process.wait_for("\n"));
        const std::string& out = process.out();
        port = static_cast<std::uint16_t>(std::stoi(out.substr(out.rfind(':') + 1)));
    }

    Process process;
    std::uint16_t port = 0;
};

TEST(Program, TellsItsPortAndServes) {
    Simulator simulator;
    EXPECT_EQ(simulator.process.out(), "listening on 127.0.0.1:" + std::to_string(simulator.port) + "\n");
    LineClient client(simulator.port);
    EXPECT_EQ(client.line(), "0000\thello \"Round 4\" 3.0 simulated");
    simulator.process.interrupt();
    EXPECT_EQ(client.line(), std::nullopt);
    EXPECT_EQ(simulator.process.wait().exit_status, 0);
}

TEST(Program, InterruptedInAMotionItStopsTheMachineFirst) {
    Simulator simulator({"--machine", MACHINES_DIR "/minimal.ini", "--log"});
    LineClient client(simulator.port);
    client.line();
    client.say("0001\tmove \"x\"=100");
    EXPECT_EQ(client.line(), "0001\taccepted");
    simulator.process.interrupt();
    EXPECT_EQ(client.lines_until("0001\tready"), "0001\terror \"aborted\"\n0001\tready\n");
    const ProcessResult result = simulator.process.wait();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.err, "client connected\nclient gone\n");
}

TEST(Program, ASerialLineThatCannotBeHadIsTold) {
    const ProcessResult missing = run_process(ZENDRIX_SIM, {"--serial", "COM999"});
    EXPECT_EQ(missing.exit_status, 1);
    EXPECT_EQ(missing.err, "zendrix-sim: " + cannot_listen_on_missing("COM999") + "\n");
    EXPECT_EQ(run_process(ZENDRIX_SIM, {"--serial", "COM1", "--port", "7073"}).exit_status, 2);
    EXPECT_EQ(run_process(ZENDRIX_SIM, {"--serial", "COM1", "--serial-terminal"}).exit_status, 2);
}

TEST(Program, OptionsReachTheServer) {
    Simulator simulator({"--once", "--revision", "2.2", "--speed", "max", "--fault", "double@request:1",
                         "--fault", "gap@request:2", "--machine", MACHINES_DIR "/minimal.ini"});
    LineClient client(simulator.port);
    EXPECT_EQ(client.line(), "0000\thello \"Minimal\" 2.2 simulated");
    client.say("0001\tping");
    EXPECT_EQ(client.line(), "0001\tready");
    EXPECT_EQ(client.line(), "0001\tready");
    client.say("0002\tping");
    client.say("0003\tping");
    EXPECT_EQ(client.line(), "0003\tready");
    client.close();
    EXPECT_EQ(simulator.process.wait().exit_status, 0);
}

TEST(Program, HelpShowsExamples) {
    const ProcessResult result = run_process(ZENDRIX_SIM, {"--help"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_NE(result.out.find("zendrix-sim --port 7073 --machine machines/rich.ini --speed 10"),
              std::string::npos);
}

TEST(Program, WrongUsageIsStatusTwo) {
    const struct {
        std::vector<std::string> arguments;
        std::string text;
    } rows[] = {
        {{"--prot", "7"}, "--prot"},
        {{"--port", "70000"}, "--port"},
        {{"--speed", "fast"}, "--speed: \"fast\" is neither max nor a factor from 0.001 on"},
        {{"--speed", "0"}, "--speed: \"0\" is neither max nor a factor from 0.001 on"},
        {{"--revision", "3"}, "--revision: \"3\" is not of the form MAJOR.MINOR"},
        {{"--fault", "cloze@request:1"}, "unknown fault \"cloze\""},
        {{"--machine", "no/such.ini"}, "no/such.ini: there is no such file"},
    };
    for (const auto& row : rows) {
        const ProcessResult result = run_process(ZENDRIX_SIM, row.arguments);
        EXPECT_EQ(result.exit_status, 2) << row.text;
        EXPECT_NE(result.err.find(row.text), std::string::npos) << result.err;
        EXPECT_EQ(result.out, "");
    }
}

TEST(Program, ATakenPortIsStatusOne) {
    Simulator first;
    const ProcessResult result = run_process(ZENDRIX_SIM, {"--port", std::to_string(first.port)});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.err.find("cannot listen on 127.0.0.1:" + std::to_string(first.port)), std::string::npos);
    EXPECT_NE(result.err.find("--port"), std::string::npos);
}

TEST(Program, TheSameSeedGivesTheSameBytes) {
    const auto scan = [](const std::string& seed) {
        Simulator simulator({"--speed", "max", "--seed", seed});
        LineClient client(simulator.port);
        client.say("0001\tinit");
        client.lines_until("0001\tready");
        client.say("0002\tscancircle 10 -5 20 25 0 360 0");
        return client.lines_until("0002\tready");
    };
    const std::string first = scan("3");
    EXPECT_GT(first.size(), 3000u * 20u);
    EXPECT_EQ(scan("3"), first);
    EXPECT_NE(scan("4"), first);
}

}  // namespace
}  // namespace zendrix::sim
