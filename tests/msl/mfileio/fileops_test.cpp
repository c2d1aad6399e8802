#include "fileops.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "faulty_files.h"
#include "hidden_files.h"
#include "os/error.h"
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
    const std::string hidden = m_directory.file(".hidden", "x");
    ASSERT_TRUE(hide(hidden));
    EXPECT_EQ(' ', file_type(hidden.c_str()));
    std::filesystem::create_directory(m_directory.path(".dir"));
    EXPECT_EQ('d', file_type(m_directory.path(".dir").c_str()));
}

TEST_F(FileopsTest, TypeOfAMissingFileIsReported) {
    const std::string missing = m_directory.path("missing");
    EXPECT_EQ(-1, file_type(missing.c_str()));
    EXPECT_EQ(Texts{"file_type(): _findfirst(\"" + missing + "\") failed: " + os::error_text(ENOENT)},
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

TEST_F(FileopsTest, RenameReplaces) {
    const std::string from = m_directory.file("from", "new");
    const std::string to = m_directory.file("to", "old");
    EXPECT_TRUE(file_rename(from.c_str(), to.c_str()));
    EXPECT_EQ("new", m_directory.content("to"));
    EXPECT_FALSE(file_rename(from.c_str(), to.c_str()));
    EXPECT_EQ(Texts{"file_rename(): MoveFileEx(" + from + "," + to + ") failed: 2"}, trace_reports());
    EXPECT_TRUE(file_remove(to.c_str()));
    EXPECT_FALSE(file_remove(to.c_str()));
}

TEST_F(FileopsTest, MakeWritableAsksTheSystemOnlyIfNeeded) {
    const std::string path = m_directory.file("file", "x");
    FaultyFiles files;
    EXPECT_TRUE(file_make_writable(path.c_str()));
    EXPECT_EQ(0, files.calls("make_writable"));
    files.fail("access", 2, EACCES);
    EXPECT_TRUE(file_make_writable(path.c_str()));
    EXPECT_EQ(1, files.calls("make_writable"));
    EXPECT_FALSE(file_make_writable(m_directory.path("missing").c_str()));
}

TEST_F(FileopsTest, IsNotDirectory) {
    EXPECT_TRUE(file_is_not_directory(m_directory.file("file", "").c_str()));
    EXPECT_FALSE(file_is_not_directory(m_directory.path().c_str()));
    EXPECT_FALSE(file_is_not_directory(m_directory.path("missing").c_str()));
}

TEST_F(FileopsTest, ReadsTheFirstLine) {
    char buffer[20];
    const std::string path = m_directory.file("file", "first line\nsecond\n");
    EXPECT_STREQ("first line\n", file_read_first_line((m_directory.path() + "\\file").c_str(), buffer, 20));
    EXPECT_STREQ("firs", file_read_first_line(path.c_str(), buffer, 5));
    EXPECT_EQ(nullptr, file_read_first_line(m_directory.file("empty", "").c_str(), buffer, 20));
    EXPECT_EQ(nullptr, file_read_first_line(m_directory.path("missing").c_str(), buffer, 20));
}

std::string backslashed(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

TEST_F(FileopsTest, FullPathIsOfWhatExists) {
    std::filesystem::create_directory(m_directory.path("sub"));
    char target[260] = "untouched";
    const std::string path = m_directory.path("sub/../sub/./");
    EXPECT_EQ(target, file_fullpath(path.c_str(), target));
    EXPECT_EQ(backslashed(m_directory.path("sub")), target);
    EXPECT_EQ(target, file_fullpath(".", target));
    EXPECT_EQ(backslashed(std::filesystem::current_path().string()), target);
    char* const own = file_fullpath(m_directory.path().c_str(), nullptr);
    ASSERT_NE(nullptr, own);
    EXPECT_EQ(backslashed(m_directory.path()), own);
    std::free(own);
    EXPECT_EQ(nullptr, file_fullpath(m_directory.path("missing").c_str(), target));
    EXPECT_EQ(1U, trace_reports().size());
    EXPECT_EQ(nullptr, file_fullpath(std::string(300, 'x').c_str(), target));
}

TEST_F(FileopsTest, IsInsideAtAnyDepth) {
    std::filesystem::create_directories(m_directory.path("a/b"));
    std::filesystem::create_directories(m_directory.path("ab"));
    const std::string a = m_directory.path("a");
    EXPECT_TRUE(file_is_inside(m_directory.path("a/b").c_str(), a.c_str()));
    EXPECT_TRUE(file_is_inside(m_directory.path("a/b").c_str(), m_directory.path().c_str()));
    EXPECT_FALSE(file_is_inside(m_directory.path("ab").c_str(), a.c_str()));
    EXPECT_FALSE(file_is_inside(a.c_str(), a.c_str()));
    EXPECT_FALSE(file_is_inside(a.c_str(), m_directory.path("a/b").c_str()));
    EXPECT_FALSE(file_is_inside(m_directory.path("a/missing").c_str(), a.c_str()));
    EXPECT_EQ(1U, trace_reports().size());
}

}  // namespace
