// The whole measuring session against a simulated machine.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

std::string text_of(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Where each of these begins, in this order and none missing.
void expect_in_order(const std::string& text, const std::vector<std::string>& parts) {
    std::size_t at = 0;
    for (const std::string& part : parts) {
        const std::size_t found = text.find(part, at);
        ASSERT_NE(found, std::string::npos) << part << " in:\n" << text.substr(at);
        at = found + part.size();
    }
}

TEST(ZxhostSession, TellsAllInOrderAndFindsTheRing) {
    const Simulator machine({"--speed", "max"}, Edits{});
    const Host host;
    const std::string out = (host.directory / "made/out").string();
    const ProcessResult result =
        host.run(machine, {"session", "--truth", machine.machine_file(), "--out", out});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    expect_in_order(result.out, {"Machine\n=======\n",
                                 "Round 4, revision 2.4, serial SIM-0004, simulated, at 127.0.0.1:",
                                 "Axes\n====\n",
                                 "c ",
                                 "turning driven rotary keypad",
                                 "> init",
                                 "init: ",
                                 "done in",
                                 "> move",
                                 "event \"movement: begin\"",
                                 "event \"movement: end\"",
                                 "> scandata x y z time",
                                 "> scancircle",
                                 " points\n",
                                 "> movehome",
                                 "Result\n======\n",
                                 "points of a ring",
                                 "centre x",
                                 "centre y",
                                 "radius",
                                 "deviation from round",
                                 "This is the known ring"});
    const std::string csv = text_of(out + "/ring.csv");
    expect_in_order(csv, {"# machine: Round 4", "# time: ", "x [mm],y [mm],z [mm],time [s]\n"});
    EXPECT_EQ(csv.back(), '\n');
    expect_in_order(text_of(out + "/ring.svg"), {"<svg ", "enlarged", "</svg>"});
}

TEST(ZxhostSession, ReportsForPrograms) {
    const Simulator machine({"--speed", "max"}, Edits{});
    const Host host;
    const ProcessResult result = host.run(machine, {"--format", "json", "session", "--truth",
                                                    machine.machine_file(), "--out", host.directory.path()});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    const auto report = nlohmann::json::parse(result.out);
    EXPECT_GT(report["points"].get<int>(), 3000);
    EXPECT_EQ(report["within"], true);
    EXPECT_NEAR(report["ring"][2]["measured"].get<double>(), 25.0045, 0.0002);
    EXPECT_NE(result.err.find("> scancircle"), std::string::npos);
}

TEST(ZxhostSession, AnotherPartIsNotTakenForTheKnownOne) {
    const Simulator machine({"--speed", "max"}, Edits{});
    const Host host;
    std::string other = text_of(machine.machine_file());
    other.replace(other.find("radius=25.0045"), 14, "radius=25.0145");
    host.directory.file("other.ini", other);
    const ProcessResult result = host.run(
        machine,
        {"session", "--truth", (host.directory / "other.ini").string(), "--out", host.directory.path()});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_NE(result.out.find("This is NOT the known ring"), std::string::npos);
    EXPECT_NE(result.err.find("not the known one"), std::string::npos);
}

TEST(ZxhostSession, WorksWithoutTruth) {
    const Simulator machine({"--speed", "max"}, Edits{});
    const Host host;
    const ProcessResult result = host.run(
        machine, {"session", "--centre", "10", "-5", "20", "--radius", "25", "--out", host.directory.path()});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_EQ(result.out.find("known"), std::string::npos);
}

// Each command of the page does what the page says, one after the other on one machine.
TEST(HostToolPage, ItsExamplesWork) {
    const Simulator machine({"--speed", "max"}, Edits{});
    const Host host;
    std::filesystem::create_directories(host.directory / "machines");
    std::filesystem::copy_file(machine.machine_file(), host.directory / "machines/round4.ini");
    std::istringstream page(text_of(ZX_HOST_TOOL_PAGE));
    int count = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("$ zxhost ", 0) != 0) continue;
        std::istringstream words(line.substr(9));
        Words arguments;
        for (std::string word; words >> word;) {
            for (const char* name : {"machines/", "out", "ring.", "x.svg"})
                if (word.rfind(name, 0) == 0) word = (host.directory / word).string();
            arguments.push_back(word);
        }
        const ProcessResult result = host.run(machine, arguments);
        EXPECT_EQ(result.exit_status, 0) << line << "\n" << result.err;
        ++count;
    }
    EXPECT_GE(count, 12);
}

}  // namespace
}  // namespace zxhost_test
