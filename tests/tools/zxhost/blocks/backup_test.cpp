// backup from outside: the driver packs its directory, the archive is verified.
#include "block_host.h"

namespace zxhost_test {
namespace {

class Backup : public BlockVerbTest {
protected:
    Backup() {
        std::filesystem::create_directories(path("machines/lab"));
        file("machines/lab.ini", "[connection]\nhost=127.0.0.1\nport=" + machine.port() + "\n");
        file("machines/lab/notes.txt", "notes");
        file("machines/empty", "");
    }

    Words backup_of(const std::string& config, const std::string& archive, const Words& more = {}) const {
        Words words{"--config", path(config), "--name", "lab", "backup", path(archive)};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }
    ProcessResult backup(const std::string& archive, const Words& more = {}) const {
        return start_host(backup_of("machines", archive, more))->wait();
    }
    void expect_refused(const Words& words, int status, const std::string& says) const {
        const ProcessResult result = start_host(words)->wait();
        EXPECT_EQ(result.exit_status, status) << result.err;
        EXPECT_NE(result.err.find(says), std::string::npos) << result.err;
        EXPECT_EQ(files(), Words{"machines"});
    }
};

TEST_F(Backup, TellsWhatIsInTheArchive) {
    const ProcessResult result = backup("lab.zip", {"--format", "json"});
    ASSERT_EQ(result.exit_status, 0) << result.err;
    const Json row = Json::parse(result.out)[0];
    const std::string archive = directory.content("lab.zip");
    EXPECT_EQ(row["files"], 2);
    EXPECT_EQ(row["bytes"], 5 + directory.content("machines/lab.ini").size());
    EXPECT_EQ(row["archive"], archive.size());
    EXPECT_EQ(archive.substr(0, 4), "PK\x03\x04");
    EXPECT_EQ(files(), (Words{"lab.zip", "machines"}));
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST_F(Backup, AnExistingFileStaysUnlessToldOtherwise) {
    file("lab.zip", "old");
    const ProcessResult refused = backup("lab.zip");
    EXPECT_EQ(refused.exit_status, 2);
    EXPECT_NE(refused.err.find("--force"), std::string::npos) << refused.err;
    EXPECT_EQ(directory.content("lab.zip"), "old");
    EXPECT_EQ(backup("lab.zip", {"--force"}).exit_status, 0);
    EXPECT_EQ(directory.content("lab.zip").substr(0, 2), "PK");
}

TEST_F(Backup, NeedsAConfigurationDirectoryAndAPlaceToWrite) {
    expect_refused({"--host", "127.0.0.1", "--port", machine.port(), "backup", path("x.zip")}, 2,
                   "--config DIR");
    expect_refused({"backup", path("x.zip")}, 2, "--config DIR");
    expect_refused(backup_of("none", "x.zip"), 2, "none");
    expect_refused(backup_of("machines", "none/x.zip"), 2, "can't be written");
    expect_refused(backup_of("machines", "machines", {"--force"}), 2, "it is a directory");
}

TEST_F(Backup, ALostConnectionLeavesNoFile) {
    file("machines/big", noise(40000000));
    RichMachine dying;
    file("machines/lab.ini", "[connection]\nhost=127.0.0.1\nport=" + dying.port() + "\n");
    const auto process = start_host(backup_of("machines", "x.zip", {"--progress"}));
    ASSERT_TRUE(process->wait_for("backup: ")) << process->err();
    dying.process().kill();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 3) << result.err;
    EXPECT_EQ(files(), Words{"machines"});
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST_F(Backup, CtrlCLeavesNoFile) {
    file("machines/big", noise(40000000));
    const auto process = start_host(backup_of("machines", "x.zip", {"--progress"}));
    ASSERT_TRUE(process->wait_for("backup: ")) << process->err();
    process->interrupt();
    const ProcessResult result = process->wait();
    EXPECT_EQ(result.exit_status, 1) << result.err;
    EXPECT_NE(result.err.find("aborted"), std::string::npos) << result.err;
    EXPECT_EQ(files(), Words{"machines"});
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST_F(Backup, IsExaminedInAScriptWithoutWriting) {
    const std::string script = file("machines/script.zx", "backup " + path("x.zip") + "\n");
    const Words words{"--config", path("machines"), "--name", "lab", "run", "--check", script};
    expect_refused(words, 0, "");
}

// The page's example, with its directory and file in this test's own.
TEST_F(Backup, WorksAsThePageShowsIt) {
    const std::string prompt = "lab$ zxhost ";
    std::ifstream page(ZX_HOST_TOOL_PAGE, std::ios::binary);
    int count = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind(prompt, 0) != 0) continue;
        std::istringstream in(line.substr(prompt.size()));
        Words words;
        for (std::string word; in >> word;) {
            if (word == "/etc/machines") word = path("machines");
            if (word == "lab.zip") word = path(word);
            words.push_back(word);
        }
        EXPECT_EQ(start_host(words)->wait().exit_status, 0) << line;
        ++count;
    }
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(std::filesystem::exists(path("lab.zip")));
}

}  // namespace
}  // namespace zxhost_test
