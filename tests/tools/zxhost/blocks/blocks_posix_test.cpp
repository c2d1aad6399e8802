// What only POSIX has: devices, a disk that is full, a terminal where a person is asked.
#include <cstdlib>

#include "block_host.h"
#include "terminal_process.h"

namespace zxhost_test {
namespace {

using test_support::TerminalProcess;

class BlocksPosix : public BlockVerbTest {
protected:
    // zxhost where no file can grow beyond a kilobyte.
    ProcessResult on_a_full_disk(const Words& words) const {
        Words all{"-c", "trap '' XFSZ; ulimit -f 2; exec \"$0\" \"$@\"", ZX_HOST_PROGRAM};
        all.insert(all.end(), words.begin(), words.end());
        return Process("/bin/sh", all,
                       {{"ZENDRIX_ERRORLOG", path("error.log")},
                        {"ZENDRIX_TRACE", path("trace.log")},
                        {"TMPDIR", temporary.path()}})
            .wait();
    }
    Words connected(const Words& words) const {
        Words all{"--host", "127.0.0.1", "--port", machine.port()};
        all.insert(all.end(), words.begin(), words.end());
        return all;
    }

    std::unique_ptr<TerminalProcess> person(const Words& words) const {
        return std::make_unique<TerminalProcess>(
            ZX_HOST_PROGRAM, connected(words),
            TerminalProcess::Environment{{"ZENDRIX_ERRORLOG", path("error.log")},
                                         {"ZENDRIX_TRACE", path("trace.log")},
                                         {"TMPDIR", temporary.path()}});
    }
};

// Windows tells it when the whole block is to have its name.
TEST_F(BlocksPosix, ANameThatIsTooLongForAFileIsWrongUsage) {
    expect_refusal({"receive", "a", path(std::string(300, 'n'))}, 2, {"can't be written"});
    EXPECT_EQ(files(), Words{});
}

TEST_F(BlocksPosix, ADeviceIsWrittenToAsItStands) {
    run({"send", "a", file("a", noise(10000))});
    expect_refusal({"receive", "a", "/dev/full", "--force"}, 2, {"/dev/full can't be written", "space"});
    expect_refusal({"receive", "a", "/dev/null"}, 2, {"--force"});
    EXPECT_EQ(run({"receive", "a", "/dev/null", "--force"}).exit_status, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(BlocksPosix, StandardOutputThatIsFullIsTold) {
    run({"send", "a", file("a", noise(10000))});
    Words words{"-c", "exec \"$0\" \"$@\" > /dev/full", ZX_HOST_PROGRAM};
    for (const std::string& word : connected({"receive", "a", "-"})) words.push_back(word);
    const ProcessResult result = Process("/bin/sh", words).wait();
    EXPECT_EQ(result.exit_status, 2);
    EXPECT_NE(result.err.find("standard output takes no more"), std::string::npos) << result.err;
}

TEST_F(BlocksPosix, AFullDiskLeavesNothingHalfWritten) {
    run({"send", "a", file("a", noise(10000))});
    file("old", "old");
    for (const char* target : {"x", "old"}) {
        const ProcessResult result = on_a_full_disk(connected({"receive", "a", path(target), "--force"}));
        EXPECT_EQ(result.exit_status, 2) << result.err;
        EXPECT_NE(result.err.find("can't be written"), std::string::npos) << result.err;
    }
    EXPECT_EQ(directory.content("old"), "old");
    EXPECT_EQ(files(), (Words{"a", "old"}));
}

TEST_F(BlocksPosix, AFullDiskLeavesNoArchive) {
    std::filesystem::create_directory(path("machines"));
    file("machines/m2zendrix.ini", "[connection]\nhost=127.0.0.1\nport=" + machine.port() + "\n");
    file("machines/big", noise(10000));
    const ProcessResult result = on_a_full_disk({"--config", path("machines"), "backup", path("x.zip")});
    EXPECT_EQ(result.exit_status, 1) << result.err;
    EXPECT_NE(result.err.find("backup: no data received"), std::string::npos) << result.err;
    EXPECT_EQ(files(), Words{"machines"});
}

TEST_F(BlocksPosix, AFileThatCanNotBePackedLeavesNoArchive) {
    std::filesystem::create_directory(path("machines"));
    file("machines/m2zendrix.ini", "[connection]\nhost=127.0.0.1\nport=" + machine.port() + "\n");
    std::filesystem::create_symlink("nowhere", path("machines/link"));
    const ProcessResult result = start_host({"--config", path("machines"), "backup", path("x.zip")})->wait();
    EXPECT_EQ(result.exit_status, 1) << result.err;
    EXPECT_NE(result.err.find("backup: no data received"), std::string::npos) << result.err;
    EXPECT_EQ(files(), Words{"machines"});
}

TEST_F(BlocksPosix, AFullDiskLeavesTheMagazineAsItWas) {
    std::string content = "[Fixed head_1_slot1]\nload.program=a\nunload.program=b\nprobe=7\n";
    content += "# " + std::string(2000, 'x') + "\n";
    const std::string m = file("m.ini", content);
    for (const Words& words : {Words{"magazine", "set", m, "1=8"}, Words{"magazine", "delete", m, "7"}}) {
        const ProcessResult result = on_a_full_disk(connected(words));
        EXPECT_EQ(result.exit_status, 2) << result.err;
        EXPECT_NE(result.err.find("which stays as it was"), std::string::npos) << result.err;
    }
    EXPECT_EQ(directory.content("m.ini"), content);
    EXPECT_EQ(files(), Words{"m.ini"});
}

TEST_F(BlocksPosix, ALinkStaysOneAndItsFileIsReplaced) {
    run({"send", "a", file("a", "new")});
    file("real", "old");
    std::filesystem::create_symlink("real", path("link"));
    expect_refusal({"receive", "a", path("link")}, 2, {"--force"});
    EXPECT_EQ(run({"receive", "a", path("link"), "--force"}).exit_status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_EQ(directory.content("real"), "new");
}

TEST_F(BlocksPosix, APersonIsAskedBeforeTheMachineStartsAgain) {
    const std::string config = file("new.config", "x");
    const Json before = json({"info"})["revision"];
    const auto no = person({"firmware", config});
    ASSERT_TRUE(no->wait_for_last_line("Go on? [yes/no]")) << no->text();
    no->type("no\r");
    EXPECT_EQ(no->wait(), 1);
    EXPECT_EQ(json({"info"})["revision"], before);
    const auto yes = person({"firmware", config});
    ASSERT_TRUE(yes->wait_for_last_line("Go on? [yes/no]")) << yes->text();
    yes->type("yes\r");
    EXPECT_EQ(yes->wait(), 0) << yes->text();
    EXPECT_NE(json({"info"})["revision"], before);
}

}  // namespace
}  // namespace zxhost_test
