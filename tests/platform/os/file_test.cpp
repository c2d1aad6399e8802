#include "os/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <vector>

#include "os/error.h"
#include "temporary_directory.h"

namespace {

class FileTest : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return m_directory.path(name); }

    // Opens, writes the text and closes.
    void write(const std::string& name, os::OpenMode mode, const std::string& text) {
        const os::FileHandle file = m_files.open(path(name).c_str(), mode, false);
        ASSERT_NE(os::no_file, file) << os::error_text(os::last_error());
        std::uint32_t done = 0;
        EXPECT_TRUE(m_files.write(file, text.data(), static_cast<std::uint32_t>(text.size()), done));
        EXPECT_EQ(text.size(), done);
        EXPECT_TRUE(m_files.flush(file));
        EXPECT_TRUE(m_files.close(file));
    }

    std::vector<std::string> names(const std::string& pattern) {
        std::vector<os::DirectoryEntry> found;
        std::vector<std::string> out;
        if (!m_files.find(path(pattern).c_str(), found)) return out;
        for (const auto& entry : found) out.push_back(entry.name);
        return out;
    }

    TemporaryDirectory m_directory;
    os::FileSystem& m_files = os::files();
};

using Names = std::vector<std::string>;

TEST_F(FileTest, ModesDifferInWhatBecomesOfTheOldFile) {
    write("file", os::OpenMode::CreateNew, "one");
    EXPECT_EQ(os::no_file, m_files.open(path("file").c_str(), os::OpenMode::CreateNew, false));
    EXPECT_EQ(EEXIST, os::last_error());
    write("file", os::OpenMode::Append, "two");
    EXPECT_EQ("onetwo", m_directory.content("file"));
    write("file", os::OpenMode::Truncate, "3");
    EXPECT_EQ("3", m_directory.content("file"));
    write("new", os::OpenMode::Append, "x");
    EXPECT_EQ("x", m_directory.content("new"));
}

TEST_F(FileTest, ReadsUpToTheEnd) {
    m_directory.file("file", "0123456789");
    const os::FileHandle file = m_files.open(path("file").c_str(), os::OpenMode::Read, false);
    char buffer[20];
    std::uint32_t done = 99;
    EXPECT_TRUE(m_files.read(file, buffer, 4, done));
    EXPECT_EQ(4U, done);
    EXPECT_TRUE(m_files.read(file, buffer, 20, done));
    EXPECT_EQ(6U, done);
    EXPECT_EQ("456789", std::string(buffer, 6));
    EXPECT_TRUE(m_files.read(file, buffer, 20, done));
    EXPECT_EQ(0U, done);
    EXPECT_FALSE(m_files.write(file, "x", 1, done));
    EXPECT_TRUE(m_files.close(file));
}

TEST_F(FileTest, ADirectoryOrNothingCannotBeOpened) {
    EXPECT_EQ(os::no_file, m_files.open(path("").c_str(), os::OpenMode::Read, false));
    EXPECT_EQ(EISDIR, os::last_error());
    EXPECT_EQ(os::no_file, m_files.open(path("none").c_str(), os::OpenMode::Read, false));
    EXPECT_EQ(ENOENT, os::last_error());
    EXPECT_EQ("No such file or directory", os::error_text(ENOENT));
    std::uint32_t done = 0;
    char c = '\0';
    EXPECT_FALSE(m_files.read(os::no_file, &c, 1, done));
    EXPECT_FALSE(m_files.close(os::no_file));
}

TEST_F(FileTest, WriteThroughAsksTheSystemForIt) {
    const os::FileHandle file = m_files.open(path("file").c_str(), os::OpenMode::Truncate, true);
    ASSERT_NE(os::no_file, file);
    EXPECT_TRUE(m_files.close(file));
}

TEST_F(FileTest, TemporaryFilesAreNewAndBesideTheTarget) {
    std::string first;
    std::string second;
    ASSERT_TRUE(m_files.make_temporary((path("") + "\\").c_str(), "ffw", first));
    ASSERT_TRUE(m_files.make_temporary(path("").c_str(), "ffw", second));
    EXPECT_NE(first, second);
    EXPECT_EQ(path(""), std::filesystem::path(first).parent_path().string());
    EXPECT_TRUE(std::filesystem::path(first).filename().string().starts_with("ffw"));
    os::FileInfo info;
    EXPECT_TRUE(m_files.info(first.c_str(), info));
    EXPECT_EQ(0, info.size);
    EXPECT_FALSE(m_files.make_temporary(path("none").c_str(), "ffw", first));
}

TEST_F(FileTest, InfoAndAccess) {
    m_directory.file("file", "12345");
    os::FileInfo info;
    EXPECT_TRUE(m_files.info(path("file").c_str(), info));
    EXPECT_EQ(5, info.size);
    EXPECT_FALSE(info.is_directory);
    EXPECT_TRUE(m_files.info(path("").c_str(), info));
    EXPECT_TRUE(info.is_directory);
    EXPECT_FALSE(m_files.info(path("none").c_str(), info));
    EXPECT_TRUE(m_files.access(path("file").c_str(), os::Access::Exists));
    EXPECT_TRUE(m_files.access(path("file").c_str(), os::Access::ReadWrite));
    EXPECT_FALSE(m_files.access(path("none").c_str(), os::Access::Exists));
}

TEST_F(FileTest, RenameReplacesAndRemoveRemoves) {
    m_directory.file("from", "new");
    m_directory.file("to", "old");
    EXPECT_TRUE(m_files.rename(path("from").c_str(), path("to").c_str()));
    EXPECT_EQ("new", m_directory.content("to"));
    EXPECT_FALSE(m_files.rename(path("from").c_str(), path("to").c_str()));
    EXPECT_TRUE(m_files.remove(path("to").c_str()));
    EXPECT_FALSE(m_files.remove(path("to").c_str()));
}

TEST_F(FileTest, MakeWritableGivesTheOwnerTheRight) {
    m_directory.file("file", "x");
    ASSERT_EQ(0, chmod(path("file").c_str(), 0400));
    EXPECT_TRUE(m_files.make_writable(path("file").c_str()));
    struct stat info {};
    ASSERT_EQ(0, stat(path("file").c_str(), &info));
    EXPECT_EQ(0600U, info.st_mode & 0777U);
    EXPECT_FALSE(m_files.make_writable(path("none").c_str()));
}

TEST_F(FileTest, AFileTakesTheRightsOfAnother) {
    m_directory.file("old", "x");
    ASSERT_EQ(0, chmod(path("old").c_str(), 0440));
    const os::FileHandle file = m_files.open(path("new").c_str(), os::OpenMode::CreateNew, false);
    ASSERT_NE(os::no_file, file);
    EXPECT_FALSE(m_files.take_rights(file, path("none").c_str()));
    EXPECT_TRUE(m_files.take_rights(file, path("old").c_str()));
    struct stat info {};
    ASSERT_EQ(0, stat(path("new").c_str(), &info));
    EXPECT_EQ(0440U, info.st_mode & 0777U);
    EXPECT_TRUE(m_files.close(file));
}

TEST_F(FileTest, FindListsSortedByName) {
    for (const char* const name : {"b.txt", "a.txt", ".c", "d"}) m_directory.file(name, "");
    EXPECT_EQ((Names{".", "..", ".c", "a.txt", "b.txt", "d"}), names("*.*"));
    EXPECT_EQ((Names{"a.txt", "b.txt"}), names("*.txt"));
    EXPECT_EQ((Names{".", "d"}), names("?"));
    EXPECT_EQ(Names{"b.txt"}, names("b.txt"));
    EXPECT_EQ(Names{}, names("*.ini"));
    EXPECT_EQ(ENOENT, os::last_error());
    EXPECT_EQ(Names{}, names("none/*.*"));
    EXPECT_EQ(Names{}, names("b[.]*"));
}

TEST_F(FileTest, AVerbatimPatternIsAName) {
    write("*.*", os::OpenMode::CreateNew, "all");
    m_directory.file("a\\b", "");
    EXPECT_EQ((std::vector<std::string>{}), names("a\\b"));
    const std::string verbatim = "\\\\?\\" + path("");
    std::vector<os::DirectoryEntry> found;
    EXPECT_TRUE(m_files.find((verbatim + "/").c_str(), found));
    EXPECT_EQ(4U, found.size()) << "with . and ..";
    EXPECT_TRUE(m_files.find((verbatim + "/*.*").c_str(), found));
    ASSERT_EQ(1U, found.size());
    EXPECT_EQ("*.*", found[0].name);
    EXPECT_TRUE(m_files.find((verbatim + "/a\\b").c_str(), found));
    EXPECT_FALSE(m_files.find((verbatim + "/a*").c_str(), found));
    os::FileInfo info;
    EXPECT_TRUE(m_files.info((verbatim + "/*.*").c_str(), info));
    EXPECT_EQ(3, info.size);
}

TEST_F(FileTest, FoundEntriesTellWhatTheyAre) {
    m_directory.file(".hidden", "");
    std::filesystem::create_directory(path("dir"));
    std::filesystem::create_directory_symlink(path("dir"), path("link"));
    std::vector<os::DirectoryEntry> found;
    ASSERT_TRUE(m_files.find(path("*.*").c_str(), found));
    ASSERT_EQ(5U, found.size());
    EXPECT_TRUE(found[0].is_directory);
    EXPECT_FALSE(found[0].is_hidden);
    EXPECT_TRUE(found[2].is_hidden);
    EXPECT_FALSE(found[2].is_directory);
    EXPECT_TRUE(found[3].is_directory);
    // A walk shall not go through a link into another tree.
    EXPECT_EQ("link", found[4].name);
    EXPECT_FALSE(found[4].is_directory);
}

class NoFiles final : public os::FileSystem {
public:
    os::FileHandle open(const char*, os::OpenMode, bool) override { return os::no_file; }
    bool read(os::FileHandle, void*, std::uint32_t, std::uint32_t&) override { return false; }
    bool write(os::FileHandle, const void*, std::uint32_t, std::uint32_t&) override { return false; }
    bool flush(os::FileHandle) override { return false; }
    bool close(os::FileHandle) override { return false; }
    bool make_temporary(const char*, const char*, std::string&) override { return false; }
    bool take_rights(os::FileHandle, const char*) override { return false; }
    bool info(const char*, os::FileInfo&) override { return false; }
    bool access(const char*, os::Access) override { return false; }
    bool find(const char*, std::vector<os::DirectoryEntry>&) override { return false; }
    bool remove(const char*) override { return false; }
    bool rename(const char*, const char*) override { return false; }
    bool make_writable(const char*) override { return false; }
};

TEST_F(FileTest, TheFileSystemCanBeReplacedAndPutBack) {
    NoFiles none;
    EXPECT_EQ(&m_files, os::replace_files(&none));
    EXPECT_EQ(&none, &os::files());
    EXPECT_EQ(&none, os::replace_files(nullptr));
    EXPECT_EQ(&m_files, &os::files());
}

}  // namespace
