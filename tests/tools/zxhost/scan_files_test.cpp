// Scan files from outside: the verbs that write and read them, and a host that is killed in the middle of a
// scan.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

using Json = nlohmann::json;

const Edits at_the_ring{initialized[0],
                        {"[axis x]", "[axis x]\nstart=35"},
                        {"[axis y]", "[axis y]\nstart=-5"},
                        {"start=300", "start=20"}};

const Words circle{"scan", "circle", "--centre", "10", "-5", "20", "--radius", "25"};

std::string text_of(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

class ScanFiles : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return (host.directory / name).string(); }

    Words scan_to(const std::string& file, const Words& more = {}) const {
        Words words = circle;
        words.insert(words.end(), {"--csv", file});
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    Json verify(const std::string& file, int status) {
        const ProcessResult result = host.run({"--format", "json", "scan", "verify", file});
        EXPECT_EQ(result.exit_status, status) << result.err;
        return Json::parse(result.out, nullptr, false);
    }

    void expect_says(const Words& words, int status, const std::string& says) {
        const ProcessResult result = host.run(words);
        EXPECT_EQ(result.exit_status, status) << result.err;
        EXPECT_NE(result.err.find(says), std::string::npos) << result.err;
    }

    Host host;
};

TEST_F(ScanFiles, AScanLeavesAWholeFileAndAllThatIsMadeOfIt) {
    const Simulator machine({"--speed", "max"}, at_the_ring);
    const std::string file = path("ring.csv");
    const ProcessResult scan = host.run(
        machine, scan_to(file, {"--format", "json", "--ply", path("ring.ply"), "--xyz", path("ring.xyz"),
                                "--picture", path("ring.svg"), "--fit", "circle"}));
    ASSERT_EQ(scan.exit_status, 0) << scan.err;
    const Json result = Json::parse(scan.out)[0];
    const auto points = result["points"].get<std::size_t>();
    EXPECT_GT(points, 3000u);
    EXPECT_NEAR(result["fit"]["quantities"][2]["value"].get<double>(), 25.0045, 0.0002);

    const Json verdict = verify(file, 0);
    EXPECT_EQ(verdict["state"], "whole");
    EXPECT_EQ(verdict["points"], points);
    const std::string head = text_of(file).substr(0, 500);
    for (const char* line : {"# scan file: 1\n# machine: Round 4, revision 2.4, serial SIM-0004\n# probe: ",
                             "\n# time: 20", "\n# action: scancircle\nx [mm],y [mm],z [mm],time [s]\n"})
        EXPECT_NE(head.find(line), std::string::npos) << head;
    EXPECT_NE(text_of(path("ring.ply")).find("element vertex " + std::to_string(points) + "\n"),
              std::string::npos);
    const std::string xyz = text_of(path("ring.xyz"));
    EXPECT_EQ(static_cast<std::size_t>(std::count(xyz.begin(), xyz.end(), '\n')), points);
    EXPECT_NE(text_of(path("ring.svg")).find("from round"), std::string::npos);

    EXPECT_EQ(host.run({"scan", "fit", file, "--shape", "circle"}).exit_status, 0);
    EXPECT_EQ(host.run({"scan", "picture", file, "--axes", "time,x", "--out", path("x.svg")}).exit_status, 0);
    EXPECT_NE(text_of(path("x.svg")).find("x [mm] over time [s]"), std::string::npos);
    EXPECT_EQ(host.run({"scan", "export", file, "--xyz", path("again.xyz")}).exit_status, 0);
    EXPECT_EQ(text_of(path("again.xyz")), xyz);
}

// The count that was shown before the end is the least that the file must hold: points are handed to the
// system before they are counted aloud.
TEST_F(ScanFiles, AKilledHostLeavesEveryPointThatCame) {
    const Simulator slow({"--speed", "1"}, at_the_ring);
    const std::string file = path("killed.csv");
    Words words = scan_to(file);
    words.insert(words.begin(), "--progress");
    const auto process = host.start(slow, words);
    ASSERT_TRUE(process->wait_for(" points\nscancircle: ")) << process->err();
    process->kill();
    const ProcessResult result = process->wait();
    EXPECT_TRUE(result.killed);
    const std::size_t last = result.err.rfind("scancircle: ");
    const auto shown = static_cast<std::uint64_t>(std::stoull(result.err.substr(last + 12)));

    const Json verdict = verify(file, 1);
    EXPECT_EQ(verdict["state"], "cut");
    EXPECT_GE(verdict["points"].get<std::uint64_t>(), shown);
    EXPECT_GT(shown, 0u);
    const std::string content = text_of(file);
    const auto lines = static_cast<std::uint64_t>(std::count(content.begin(), content.end(), '\n'));
    EXPECT_EQ(verdict["line"], lines + 1);
    EXPECT_EQ(verdict["byte"], content.rfind('\n') + 1);
    EXPECT_EQ(verdict["points"], lines - 6);
    expect_says({"scan", "verify", file}, 1,
                "killed.csv: cut at line " + std::to_string(lines + 1) + ", byte ");
    expect_says({"scan", "export", file, "--ply", path("killed.ply")}, 0, "note: ");
    EXPECT_NE(text_of(path("killed.ply")).find("comment scan: cut"), std::string::npos);
}

TEST_F(ScanFiles, AnAbortedScanSaysSoInItsFile) {
    const Simulator slow({"--speed", "1"}, at_the_ring);
    const std::string file = path("aborted.csv");
    Words words = scan_to(file, {"--ply", path("aborted.ply")});
    words.insert(words.begin(), "--progress");
    const auto process = host.start(slow, words);
    ASSERT_TRUE(process->wait_for("scancircle: ")) << process->err();
    process->interrupt();
    EXPECT_EQ(process->wait().exit_status, 1);
    const Json verdict = verify(file, 1);
    EXPECT_EQ(verdict["state"], "cut");
    EXPECT_EQ(verdict["why"], "scancircle: aborted");
    EXPECT_GT(verdict["points"].get<int>(), 0);
    EXPECT_FALSE(std::filesystem::exists(path("aborted.ply")));
}

TEST_F(ScanFiles, ALostMachineLeavesACutFile) {
    Simulator slow({"--speed", "1"}, at_the_ring);
    const std::string file = path("lost.csv");
    Words words = scan_to(file);
    words.insert(words.begin(), "--progress");
    const auto process = host.start(slow, words);
    ASSERT_TRUE(process->wait_for("scancircle: ")) << process->err();
    slow.process().kill();
    EXPECT_EQ(process->wait().exit_status, 3);
    const Json verdict = verify(file, 1);
    EXPECT_EQ(verdict["why"], "fatal: machine connection lost");
    EXPECT_GT(verdict["points"].get<int>(), 0);
}

TEST_F(ScanFiles, OtherFilesAreAnsweredClearly) {
    expect_says({"scan", "verify", path("none.csv")}, 2, "none.csv can't be read: ");
    expect_says({"scan", "verify", host.directory.path()}, 2, "can't be read");
    expect_says({"scan", "verify", ZX_HOST_PROGRAM}, 2, "no scan file at line 1, byte 0: it begins with");
    expect_says({"scan", "verify"}, 2, "FILE");
    expect_says({"scan", "export", path("none.csv")}, 2, "nothing to write");
    expect_says({"scan", "fit", path("none.csv"), "--shape", "circle"}, 2, "can't be read");
    expect_says({"scan", "fit", path("none.csv")}, 2, "--shape");
    expect_says({"scan", "x=1", "--ply", path("a.ply")}, 2, "--csv");
    expect_says({"scan", "circle", "--centre", "0", "0", "--radius", "1", "--fit", "circle"}, 2, "--csv");
    std::ofstream(path("huge.csv"), std::ios::binary)
        << "# scan file: 1\n# machine: " << std::string(3'000'000, '1') << "\n";
    expect_says({"scan", "verify", path("huge.csv")}, 1,
                "damaged at line 2, byte 15: the line is longer than");
    std::ofstream(path("esc.csv"), std::ios::binary) << "# scan file: 1\n\x1b[2J\x07\n# machine\n";
    expect_says({"scan", "verify", path("esc.csv")}, 1, "damaged at line 3, byte 21: ");
}

}  // namespace
}  // namespace zxhost_test
