// The blocks that zendrix-sim begins with.
#include <gtest/gtest.h>

#include "net/lineclient.h"
#include "temporary_directory.h"
#include "test_process.h"

namespace zendrix::sim {
namespace {

TEST(ProgramBlocks, AreTheFilesOfADirectory) {
    const TemporaryDirectory directory;
    directory.file("a.txt", "AB");
    directory.file("b.bin", std::string("\0\r\n", 3));
    directory.file("empty", "");
    std::filesystem::create_directory(directory.path("folder"));
    test_support::Process process(ZENDRIX_SIM, {"--blocks", directory.path()});
    ASSERT_TRUE(process.wait_for("\n"));
    LineClient client(
        static_cast<std::uint16_t>(std::stoi(process.out().substr(process.out().rfind(':') + 1))));
    client.say("0001\treceive \"a.txt\"");
    ASSERT_TRUE(client.reaches("0001\tdata \"AB\""));
    client.say("0002\treceive \"b.bin\"");
    ASSERT_TRUE(client.reaches("0002\tdata base64 \"AA0K\""));
    client.say("0003\treceive \"blocks.list\"");  // "a.txt" 2, "b.bin" 3, "empty" 0
    EXPECT_TRUE(client.reaches("0003\tdata base64 \"ImEudHh0IiAyCiJiLmJpbiIgMwoiZW1wdHkiIDAK\""));
}

TEST(ProgramBlocks, ADirectoryThatIsNoneOrDoesNotFitIsStatusTwo) {
    const TemporaryDirectory directory;
    const std::string machine = directory.file("m.ini", "[axis x]\nkind=linear\n[blocks]\nlongest=3\n");
    std::filesystem::create_directory(directory.path("blocks"));
    directory.file("blocks/a", "1234");
    const struct {
        std::vector<std::string> arguments;
        std::string text;
    } rows[] = {
        {{"--blocks", directory.path("missing")}, "--blocks: \"" + directory.path("missing") + "\": "},
        {{"--machine", machine, "--blocks", directory.path("blocks")},
         "--blocks: \"" + directory.path("blocks") + "\": error \"argument out of range\""},
    };
    for (const auto& row : rows) {
        const test_support::ProcessResult result = test_support::run_process(ZENDRIX_SIM, row.arguments);
        EXPECT_EQ(result.exit_status, 2) << row.text;
        EXPECT_NE(result.err.find(row.text), std::string::npos) << result.err;
    }
}

}  // namespace
}  // namespace zendrix::sim
