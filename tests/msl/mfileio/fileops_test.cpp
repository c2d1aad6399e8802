#include "fileops.h"

#include <cerrno>
#include <filesystem>

#include "faulty_files.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class FileopsTest : public ReportsTest {
protected:
    TemporaryDirectory m_directory;
};

TEST_F(FileopsTest, TypeTellsDirectoryHiddenAndOther) {
    EXPECT_EQ('d', file_type(m_directory.path().c_str()));
    EXPECT_EQ('-', file_type(m_directory.file("plain", "x").c_str()));
    EXPECT_EQ(' ', file_type(m_directory.file(".hidden", "x").c_str()));
    std::filesystem::create_directory(m_directory.path(".dir"));
    EXPECT_EQ('d', file_type(m_directory.path(".dir").c_str()));
}

TEST_F(FileopsTest, TypeOfAMissingFileIsReported) {
    const std::string missing = m_directory.path("missing");
    EXPECT_EQ(-1, file_type(missing.c_str()));
    EXPECT_EQ(Texts{"file_type(): _findfirst(\"" + missing + "\") failed: No such file or directory"},
              trace_reports());
    EXPECT_EQ("msl/mfileio/src/fileops", recording::error_trace_places().front().source);
}

TEST_F(FileopsTest, APatternMeansItsFirstMatch) {
    m_directory.file("b.txt", "x");
    std::filesystem::create_directory(m_directory.path("a.txt"));
    EXPECT_EQ('d', file_type(m_directory.path("*.txt").c_str()));
    EXPECT_EQ('d', file_type(m_directory.path("?.txt").c_str()));
    EXPECT_EQ(-1, file_type(m_directory.path("*.ini").c_str()));
    EXPECT_EQ(1U, trace_reports().size());
    EXPECT_EQ('-', file_type(m_directory.path("b.*").c_str()));
    EXPECT_EQ(-1, file_size(m_directory.path("b.*").c_str()));
}

TEST_F(FileopsTest, ALiteralNameWinsOverAPattern) {
    std::filesystem::create_directory(m_directory.path("a.txt"));
    m_directory.file("*.txt", "abc");
    EXPECT_EQ('-', file_type(m_directory.path("*.txt").c_str()));
    EXPECT_EQ(3, file_size(m_directory.path("*.txt").c_str()));
    m_directory.file("[a].txt", "x");
    EXPECT_EQ('-', file_type(m_directory.path("[a].t?t").c_str()));
}

TEST_F(FileopsTest, SizeOfFileDirectoryAndNothing) {
    EXPECT_EQ(5, file_size(m_directory.file("five", "12345").c_str()));
    EXPECT_EQ(0, file_size(m_directory.path().c_str()));
    EXPECT_EQ(-1, file_size(m_directory.path("missing").c_str()));
    EXPECT_EQ(1U, trace_reports().size());
    FaultyFiles files;
    files.fail("info", 1, EIO);
    EXPECT_EQ(-1, file_size(m_directory.path("five").c_str()));
}

TEST_F(FileopsTest, SeparatorsOfBothKindsWork) {
    std::filesystem::create_directory(m_directory.path("sub"));
    m_directory.file("sub/file", "x");
    const std::string mixed = m_directory.path() + "\\sub/file";
    EXPECT_TRUE(file_exists(mixed.c_str()));
    EXPECT_EQ(1, file_size((m_directory.path() + "\\sub\\file").c_str()));
}

TEST_F(FileopsTest, ExistsIsTrueOfDirectoriesToo) {
    EXPECT_TRUE(file_exists(m_directory.path().c_str()));
    EXPECT_FALSE(file_exists(m_directory.path("missing").c_str()));
}

std::string dirname_of(const char* path) {
    char target[100] = "untouched";
    const char* const result = file_dirname(path, target);
    EXPECT_TRUE(result == target || result == nullptr);
    return (result ? "" : "null:") + std::string(target);
}

TEST_F(FileopsTest, DirnameEndsInABackslash) {
    EXPECT_EQ("a/b\\", dirname_of("a/b/c"));
    EXPECT_EQ("a\\", dirname_of("a\\b"));
    EXPECT_EQ("\\", dirname_of("/abc"));
    EXPECT_EQ("a/\\", dirname_of("a//b"));
    EXPECT_EQ("a/b\\", dirname_of("a/b/"));
    EXPECT_EQ("null:untouched", dirname_of("abc"));
    EXPECT_EQ("null:untouched", dirname_of(""));
}

TEST_F(FileopsTest, BasenameIsTheLastPart) {
    EXPECT_STREQ("abc", file_basename("abc"));
    EXPECT_STREQ("c", file_basename("a\\b/c"));
    EXPECT_STREQ("", file_basename("a/"));
    EXPECT_EQ(nullptr, file_basename(""));
}

}  // namespace
