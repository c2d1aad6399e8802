// The shell as a program at a pipe has it.
#include <gtest/gtest.h>

#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

class ShellAtAPipe : public ::testing::Test {
protected:
    // A shell whose standard input is this text.
    ProcessResult piped(const std::string& text) {
        Words words = host.connection(machine);
        words.push_back("shell");
        return host.start(words, host.directory.file("input", text))->wait();
    }

    const Simulator machine;
    Host host;
};

TEST_F(ShellAtAPipe, APipeHasNoPromptAndGoesOnAfterErrors) {
    const ProcessResult result = piped("move x=7\nmove q=1\r\n\n# nothing\nget x --format json");
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.out.find("zxhost>"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("\"value\": 7.0"), std::string::npos) << result.out;
    EXPECT_NE(result.err.find("zxhost: move: "), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("event"), std::string::npos) << result.err;
}

TEST_F(ShellAtAPipe, APipeEndsAtExitWithTheStatusOfTheFirstFailure) {
    EXPECT_EQ(piped("get x\nexit\nmove q=1\n").exit_status, 0);
    EXPECT_EQ(piped("nonsense\nmove q=1\n").exit_status, 2);
    EXPECT_EQ(piped("").exit_status, 0);
}

TEST_F(ShellAtAPipe, APipeOfAnythingIsAnsweredLineByLine) {
    const ProcessResult result =
        piped(std::string("\0\x1b[2J\n", 6) + std::string(300000, 'x') + "\nget speed\nshell\n");
    EXPECT_EQ(result.exit_status, 2);
    EXPECT_NE(result.err.find("\\x00"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("longer than 65536 bytes"), std::string::npos) << result.err;
    EXPECT_NE(result.out.find("50.0000"), std::string::npos) << result.out;
    EXPECT_NE(result.err.find("no verb or option 'shell'"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace zxhost_test
