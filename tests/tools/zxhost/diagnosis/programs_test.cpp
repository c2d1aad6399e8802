// zxhost config and zxhost doctor from outside.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "../zxhost_programs.h"
#include "lineserver.h"

namespace zxhost_test {
namespace {

using Json = nlohmann::json;

class DiagnosisTest : public ::testing::Test {
protected:
    ProcessResult run(const Words& words) { return host.run(words); }

    Json json(Words words, int status = 0) {
        words.insert(words.begin(), {"--format", "json"});
        const ProcessResult result = run(words);
        EXPECT_EQ(result.exit_status, status) << result.err;
        return Json::parse(result.out, nullptr, false);
    }
    // As the system writes it, which is how the report does.
    std::string path(const std::string& name) const {
        return std::filesystem::path(host.directory.path(name)).make_preferred().string();
    }
    ProcessResult config(const std::string& ini) {
        host.directory.file("lab.ini", ini);
        return run({"--config", host.directory.path(), "--name", "lab", "config"});
    }
    // Climbs to a server that plays the script.
    ProcessResult doctor(test::Script script, const Words& more = {}) {
        const auto server = test::serve_tcp(std::move(script));
        const std::string whole = server->connection_string();
        Words words{"doctor", "127.0.0.1", whole.substr(whole.find(' ') + 1)};
        words.insert(words.end(), more.begin(), more.end());
        const ProcessResult result = run(words);
        server->finish();
        return result;
    }
    static void expect_broken(const ProcessResult& result, int status, const std::string& rung,
                              const Words& says) {
        EXPECT_EQ(result.exit_status, status) << result.out << result.err;
        EXPECT_EQ(result.err.rfind("zxhost: doctor: " + rung + ": ", 0), 0U) << result.err;
        EXPECT_NE(("\n" + result.out).find("\nbroken  " + rung), std::string::npos) << result.out;
        for (const std::string& text : says)
            EXPECT_NE(result.err.find(text), std::string::npos) << result.err;
    }

    Host host;
};

TEST_F(DiagnosisTest, ConfigShowsWhatIsInForce) {
    const ProcessResult result = config("[connection]\nhost=10.0.0.7 // new\n");
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("10.0.0.7"), std::string::npos);
    EXPECT_NE(result.out.find(path("lab.ini") + ":2"), std::string::npos);
    EXPECT_NE(result.out.find("// new"), std::string::npos);
    EXPECT_NE(result.out.find("7073"), std::string::npos);
}

TEST_F(DiagnosisTest, ConfigInJson) {
    host.directory.file("lab.ini", "[connection]\nhost=a ; b\nprot=1\n");
    const Json report = json({"--config", host.directory.path(), "--name", "lab", "config"}, 1);
    EXPECT_EQ(report["files"][0], Json({{"file", path("lab.ini")}, {"state", "taken"}}));
    EXPECT_EQ(report["values"][0], Json({{"section", "connection"},
                                         {"key", "host"},
                                         {"value", "a"},
                                         {"from", "file"},
                                         {"file", path("lab.ini")},
                                         {"line", 2},
                                         {"written", "a ; b"},
                                         {"lost", "; b"}}));
    EXPECT_EQ(report["values"][1]["from"], "default");
    EXPECT_EQ(report["values"][1]["line"], nullptr);
    EXPECT_EQ(report["findings"][0]["kind"], "near miss");
    EXPECT_EQ(report["findings"][0]["line"], 3);
}

TEST_F(DiagnosisTest, ConfigsStatusTellsWhetherThereIsSomethingToLookAt) {
    const ProcessResult result = config("[connection]\nHost=a\n");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.out.find(":2: [connection] Host isn't read by the driver"), std::string::npos)
        << result.out;
    EXPECT_NE(result.err.find("config: 1 thing to look at"), std::string::npos) << result.err;
    EXPECT_EQ(config("nonsense").exit_status, 1);
    EXPECT_EQ(run({"--host", "a", "config"}).exit_status, 2);
    const ProcessResult help = run({"config", "--help"});
    EXPECT_EQ(help.exit_status, 0);
    EXPECT_NE(help.out.find("example: "), std::string::npos);
}

TEST_F(DiagnosisTest, ConfigSurvivesStrangeFiles) {
    EXPECT_EQ(config("[connection]\nhost=\x1b[2J\xff\n\x01=\x02\n").out.find('\x1b'), std::string::npos);
    EXPECT_EQ(config(std::string(1 << 20, '[')).exit_status, 1);
    EXPECT_EQ(config(std::string(1 << 20, '\0')).exit_status, 0);
    std::string many;
    for (int i = 0; i < 20000; ++i) many += "[s" + std::to_string(i) + "]\nk=1\n";
    EXPECT_EQ(config(many).exit_status, 1);
}

TEST_F(DiagnosisTest, TheDriverTakesWhatConfigShows) {
    const Simulator machine;
    host.directory.file("lab.ini",
                        "[connection]\nhost = 127.0.0 .1 ; new\nport=" + machine.port() + "// ours\n");
    const Words where{"--config", host.directory.path(), "--name", "lab"};
    Words words = where;
    words.push_back("config");
    const Json report = json(words, 1);
    EXPECT_EQ(report["values"][0]["value"], "127.0.0.1");
    EXPECT_EQ(report["values"][1]["value"], machine.port());
    words.back() = "info";
    EXPECT_EQ(run(words).exit_status, 0);
    words.back() = "doctor";
    const ProcessResult doctor = run(words);
    EXPECT_EQ(doctor.exit_status, 0) << doctor.err;
    EXPECT_NE(doctor.out.find("remark  keys"), std::string::npos) << doctor.out;
}

TEST_F(DiagnosisTest, DoctorClimbsToTheSimulatedMachine) {
    const Simulator machine;
    const ProcessResult result = run({"doctor", "127.0.0.1", machine.port()});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    std::istringstream lines(result.out);
    Words rungs;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(' ', 0) == 0) continue;  // advice
        // What is said of the adapter depends on the computer.
        EXPECT_TRUE(line.rfind("holds   ", 0) == 0 || line.rfind("remark  adapter", 0) == 0) << line;
        rungs.push_back(line.substr(8, line.find("  ", 8) - 8));
    }
    EXPECT_EQ(rungs, (Words{"configuration", "keys", "address", "connection", "hello", "revision", "commands",
                            "machine lock", "adapter", "round trip"}));
    const Json report = json({"doctor", "127.0.0.1", machine.port()});
    EXPECT_EQ(report["machine"], "127.0.0.1 " + machine.port());
    EXPECT_EQ(report["broken"], nullptr);
    EXPECT_EQ(report["rungs"].size(), 10U);
    EXPECT_EQ(report["round_trip"]["count"], 200);
    EXPECT_GT(report["round_trip"]["median_us"].get<double>(), 0.0);
    EXPECT_GE(report["round_trip"]["slowest_us"], report["round_trip"]["p99_us"]);
}

TEST_F(DiagnosisTest, DoctorMovesNothing) {
    const Simulator machine;
    const auto listener = host.start(machine, {"events", "--count", "2"});
    ASSERT_TRUE(listener->wait_for("listening to"));
    EXPECT_EQ(run({"doctor", "127.0.0.1", machine.port()}).exit_status, 0);
    EXPECT_EQ(listener->out(), "") << "no event so far";
    EXPECT_EQ(host.run(machine, {"move", "x=5"}).exit_status, 0);
    const std::string heard = listener->wait().out;
    EXPECT_NE(heard.find("movement: begin"), std::string::npos) << heard;
}

TEST_F(DiagnosisTest, DoctorTakesTheMachineOfTheCommonOptionsToo) {
    const Simulator machine;
    EXPECT_EQ(host.run(machine, {"doctor"}).exit_status, 0);
}

TEST_F(DiagnosisTest, DoctorStopsAtTheConfiguration) {
    const Words where{"--config", host.directory.path(), "--name", "lab", "doctor"};
    expect_broken(run(where), 2, "configuration", {"there is neither", "lab.ini", "--name"});
    host.directory.file("lab.ini", "[connection]\nhost=127.0.0.1\nhost=127.0.0.2\n");
    expect_broken(run(where), 2, "configuration", {"lab.ini:3", "seen twice", "first in line 2"});
    host.directory.file("lab.ini", "[Connection]\nhost=127.0.0.1\n");
    expect_broken(run(where), 2, "keys", {"lab.ini:2", "did you mean [connection] host"});
}

TEST_F(DiagnosisTest, DoctorStopsOnTheWayToTheMachine) {
    expect_broken(run({"doctor", "no-such-machine.invalid"}), 3, "address", {"stands for no address"});
    std::string port;
    {
        const Simulator gone;
        port = gone.port();
    }
    expect_broken(run({"doctor", "127.0.0.1", port}), 3, "connection",
                  {"connection refused", "start the machine server"});
    expect_broken(run({"doctor", "/no/such/sim.dll"}), 3, "connection", {"/no/such/sim.dll"});
    expect_broken(run({"doctor", "/no/such/COM1"}), 3, "connection", {"/no/such/COM1"});
    expect_broken(doctor([](test::Peer& peer) { peer.wait_for_close(); }), 3, "hello",
                  {"silent for 2000 ms"});
    expect_broken(doctor([](test::Peer& peer) { peer.line("220 mail.example ESMTP"); }), 3, "hello",
                  {"it says \"220 mail.example ESMTP\"", "another service"});
    const Simulator newer({"--speed", "max", "--revision", "9.1"});
    expect_broken(run({"doctor", "127.0.0.1", newer.port()}), 3, "revision", {"9.1 is not known"});
    const Simulator silent({"--speed", "max", "--fault", "silent@connect:1"});
    expect_broken(run({"doctor", "127.0.0.1", silent.port()}), 3, "hello", {"silent"});
}

TEST_F(DiagnosisTest, DoctorStopsAtAMachineThatCannotBeDriven) {
    expect_broken(doctor([](test::Peer& peer) {
                      peer.hello();
                      peer.serve({{"commands", {"data \"dance\"", "ready"}}});
                  }),
                  1, "commands", {"0 of the 35"});
    const Simulator machine({"--speed", "max", "--fault", "close@request:1"});
    expect_broken(run({"doctor", "127.0.0.1", machine.port()}), 1, "commands", {"closed by the server"});
}

TEST_F(DiagnosisTest, DoctorStopsAtAMachineInUse) {
    const ProcessResult result = doctor([](test::Peer& peer) {
        peer.hello();
        peer.serve({{"commands", {"data \"get\"", "ready"}},
                    {"machine get now", {"error \"wrong state\"", "ready"}}});
    });
    expect_broken(result, 1, "machine lock", {"the machine isn't free: wrong state", "another host has it"});
}

TEST_F(DiagnosisTest, DoctorInJsonTellsTheBrokenRung) {
    const Json report = json({"doctor", "no-such-machine.invalid"}, 3);
    EXPECT_EQ(report["broken"], "address");
    EXPECT_EQ(report["round_trip"], nullptr);
    EXPECT_EQ(report["rungs"].back()["state"], "broken");
    EXPECT_NE(report["rungs"].back()["advice"].get<std::string>().find("in numbers"), std::string::npos);
}

TEST_F(DiagnosisTest, DoctorRefusesWhatIsNoPort) {
    EXPECT_EQ(run({"doctor", "127.0.0.1", "0"}).exit_status, 2);
    EXPECT_EQ(run({"doctor", "127.0.0.1", "x"}).exit_status, 2);
    EXPECT_NE(run({"doctor", "--help"}).out.find("Nothing moves"), std::string::npos);
}

// The indented block of the page that begins with this line, without its indentation.
std::string block_of(const std::string& first) {
    std::ifstream page(ZX_HOST_TOOL_PAGE);
    std::string text;
    for (std::string line; std::getline(page, line);) {
        if (text.empty() && line != "    " + first) continue;
        if (!line.empty() && line.rfind("    ", 0) != 0) break;
        text += (line.empty() ? "" : line.substr(4)) + "\n";
    }
    return text;
}

// Widths of columns depend on the directory's name.
std::string without_layout(const std::string& text) {
    return std::regex_replace(std::regex_replace(text, std::regex("-{3,}"), "---"), std::regex("[ \n]+"),
                              " ");
}

TEST_F(DiagnosisTest, ThePagesConfigurationReadsAsItSays) {
    const std::string ini = block_of("[connection]");
    ASSERT_NE(ini, "");
    const std::string shown = block_of("$ zxhost --config /etc/machines --name lab config");
    ASSERT_NE(shown, "");
    const std::string directory = host.directory.path();
    std::string out = config(ini).out;
    for (std::size_t at; (at = out.find(directory)) != std::string::npos;)
        out.replace(at, directory.size(), "/etc/machines");
    std::replace(out.begin(), out.end(), '\\', '/');
    EXPECT_EQ(without_layout(shown),
              without_layout("$ zxhost --config /etc/machines --name lab config\n" + out));
}

TEST_F(DiagnosisTest, ThePagesLadderHoldsAsItSays) {
    std::istringstream shown(block_of("$ zxhost doctor 127.0.0.1 7073"));
    const Simulator machine;
    std::istringstream out(run({"doctor", "127.0.0.1", machine.port()}).out);
    std::string line, expected;
    std::getline(shown, expected);
    int count = 0;
    while (std::getline(out, line)) {
        if (line.rfind(' ', 0) == 0) continue;  // advice
        std::getline(shown, expected);
        // What is said of the adapter depends on the computer.
        const std::size_t from = line.find("adapter") == 8 ? 8 : 0;
        EXPECT_EQ(line.substr(from, 22 - from), expected.substr(from, 22 - from));
        ++count;
    }
    EXPECT_EQ(count, 10);
}

}  // namespace
}  // namespace zxhost_test
