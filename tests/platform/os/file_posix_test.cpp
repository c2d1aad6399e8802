#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "file_fixture.h"

namespace {

using FileTestPosix = FileTest;

TEST_F(FileTestPosix, ADirectoryIsRefusedAsOne) {
    EXPECT_EQ(os::no_file, m_files.open(path("").c_str(), os::OpenMode::Read, false));
    EXPECT_EQ(EISDIR, os::last_error());
    EXPECT_EQ("No such file or directory", os::error_text(ENOENT));
}

TEST_F(FileTestPosix, APatternMatchesNamesWithALeadingDot) {
    m_directory.file("d", "");
    EXPECT_EQ((Names{".", "d"}), names("?"));
}

TEST_F(FileTestPosix, MakeWritableGivesTheOwnerTheRight) {
    m_directory.file("file", "x");
    ASSERT_EQ(0, chmod(path("file").c_str(), 0400));
    EXPECT_TRUE(m_files.make_writable(path("file").c_str()));
    struct stat info {};
    ASSERT_EQ(0, stat(path("file").c_str(), &info));
    EXPECT_EQ(0600U, info.st_mode & 0777U);
    EXPECT_FALSE(m_files.make_writable(path("none").c_str()));
}

TEST_F(FileTestPosix, AFileTakesTheRightsOfAnother) {
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

TEST_F(FileTestPosix, AVerbatimPatternIsAName) {
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

TEST_F(FileTestPosix, FoundEntriesTellWhatTheyAre) {
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

}  // namespace
