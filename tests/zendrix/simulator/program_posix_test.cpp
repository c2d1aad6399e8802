// What zendrix-sim does where there are signals and serial lines in software.
#include <gtest/gtest.h>
#include <signal.h>

#include <string>

#include "net/serialclient.h"
#include "test_process.h"

namespace zendrix::sim {
namespace {

using test_support::Process;

void terminate(const Process& process) { ::kill(static_cast<pid_t>(process.id()), SIGTERM); }

TEST(ProgramPosix, EndsOnSigterm) {
    Process process(ZENDRIX_SIM, {});
    ASSERT_TRUE(process.wait_for("\n"));
    terminate(process);
    EXPECT_EQ(process.wait().exit_status, 0);
}

TEST(ProgramPosix, ServesASerialLineInSoftware) {
    Process process(ZENDRIX_SIM, {"--serial-terminal", "--speed", "max"});
    ASSERT_TRUE(process.wait_for("\n"));
    const std::string begin = "listening on ";
    ASSERT_EQ(process.out().substr(0, begin.size()), begin);
    SerialClient line(process.out().substr(begin.size(), process.out().size() - begin.size() - 1));
    line.say("0000\thello");
    EXPECT_TRUE(line.reaches("0000\thello \"Round 4\" 3.0 simulated"));
    line.say("0001\tping");
    EXPECT_EQ(line.line(), "0001\tready");
    terminate(process);
    EXPECT_EQ(process.wait().exit_status, 0);
}

}  // namespace
}  // namespace zendrix::sim
