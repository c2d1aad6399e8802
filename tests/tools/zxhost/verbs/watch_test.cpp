// watch from outside: each record shown, and a clean end.

#include "rich_machine.h"

namespace zxhost_test {
namespace {

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

class Watch : public VerbTest {};

TEST_F(Watch, CsvHasEveryRecordInItsOrder) {
    const ProcessResult result =
        run({"watch", "x", "z", "--interval", "1", "--count", "200", "--format", "csv"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    const std::vector<std::string> lines = lines_of(result.out);
    ASSERT_EQ(lines.size(), 201u);
    EXPECT_EQ(lines[0], "record,seconds [s],x [mm],z [mm]");
    for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i].substr(0, lines[i].find(',')), std::to_string(i));
        EXPECT_EQ(std::count(lines[i].begin(), lines[i].end(), ','), 3) << lines[i];
    }
    EXPECT_NE(result.err.find("watching x, z of 127.0.0.1:"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("200 records in "), std::string::npos) << result.err;
}

TEST_F(Watch, FollowsAMotion) {
    const auto watcher = start(machine, {"--format", "json", "watch", "x", "--interval", "5"});
    ASSERT_TRUE(watcher->wait_for("\"x\":"));
    EXPECT_EQ(run({"move", "x=12.5"}).exit_status, 0);
    EXPECT_TRUE(watcher->wait_for("\"x\":12.5"));
    watcher->interrupt();
    const ProcessResult result = watcher->wait();
    EXPECT_EQ(result.exit_status, 0) << result.err;
    for (const std::string& line : lines_of(result.out)) EXPECT_TRUE(Json::accept(line)) << line;
}

TEST_F(Watch, WithoutATerminalTheTableIsLines) {
    const ProcessResult result = run({"watch", "c", "--interval", "10", "--count", "2"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    const std::vector<std::string> lines = lines_of(result.out);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "  record     seconds       c [deg]");
}

TEST_F(Watch, EndsByTheClock) {
    const ProcessResult result = run({"watch", "--interval", "0", "--for", "0.1", "--format", "csv"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_GT(lines_of(result.out).size(), 1u);
    EXPECT_EQ(lines_of(result.out)[0].find("record,seconds [s],air"), 0u);
}

TEST_F(Watch, UnknownAxesAreAnError) {
    const ProcessResult unknown = run({"watch", "x", "no such", "--count", "1"});
    EXPECT_EQ(unknown.exit_status, 1);
    EXPECT_NE(unknown.err.find("zxhost: watch: "), std::string::npos) << unknown.err;
    EXPECT_NE(unknown.err.find("zxhost axes"), std::string::npos) << unknown.err;
    expect_refusal({"watch", "x", "x"}, 2, {"twice"});
    expect_refusal({"watch", "x", "--interval", "-1"}, 2, {"--interval"});
    expect_refusal({"watch", "x", "--format", "xml"}, 2, {"xml"});
}

TEST_F(Watch, TailsOfARecordAreDropped) {
    const RichMachine cutting({"--fault", "cut@record:3"});
    const ProcessResult result =
        run_on(cutting, {"watch", "x", "y", "z", "--interval", "1", "--count", "20", "--format", "csv"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    const std::vector<std::string> lines = lines_of(result.out);
    ASSERT_EQ(lines.size(), 21u);
    for (const std::string& line : lines) EXPECT_EQ(std::count(line.begin(), line.end(), ','), 4) << line;
}

TEST_F(Watch, ALostMachineKeepsWhatCame) {
    RichMachine dying;
    const auto watcher = start(dying, {"watch", "x", "--interval", "1", "--format", "csv"});
    ASSERT_TRUE(watcher->wait_for("\n5,"));
    dying.process().kill();
    const ProcessResult result = watcher->wait();
    EXPECT_EQ(result.exit_status, 3);
    EXPECT_NE(result.err.find("zxhost: fatal: machine connection lost"), std::string::npos) << result.err;
    EXPECT_EQ(result.out.back(), '\n');
}

}  // namespace
}  // namespace zxhost_test
