// The unpacked programs, in a place that they were not built for.
#include <gtest/gtest.h>

#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

TEST(InstalledProgramsPosix, SayHowTheyAreUsed) {
    for (const char* const program : {ZX_HOST_PROGRAM, ZX_SIMULATOR_PROGRAM}) {
        const ProcessResult result = test_support::run_process(program, {"--help"});
        EXPECT_EQ(result.exit_status, 0) << result.err;
        EXPECT_NE(result.out.find("--help"), std::string::npos) << result.out;
        EXPECT_EQ(result.err, "");
    }
}

TEST(InstalledProgramsPosix, MeasureARing) {
    const Simulator machine({"--speed", "max"}, Edits{});
    const Host host;
    const std::string out = host.directory.path("out");
    const ProcessResult result = host.run(machine, {"session", "--truth", ZX_ROUND_MACHINE, "--out", out});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_NE(result.out.find("This is the known ring"), std::string::npos) << result.out;

    const ProcessResult verdict = host.run({"scan", "verify", out + "/ring.csv"});
    EXPECT_EQ(verdict.exit_status, 0) << verdict.err;
    EXPECT_NE(verdict.out.find("whole"), std::string::npos) << verdict.out;
}

// The client looks for a library without a folder beside itself.
TEST(InstalledProgramsPosix, TakeTheMachineIntoTheirOwnProcess) {
    const Host host;
    host.directory.file("m2zendrix.ini", "[connection]\nhost=zendrix-sim.dll --speed max\n");
    const ProcessResult result = host.run({"--config", host.directory.path(), "info"});
    EXPECT_EQ(result.exit_status, 0) << result.err;
    EXPECT_NE(result.out.find("Round 4"), std::string::npos) << result.out;
}

}  // namespace
}  // namespace zxhost_test
