#include <cerrno>
#include <filesystem>
#include <set>

#include "fastfile.h"
#include "faulty_files.h"
#include "fileops.h"
#include "opening_error.h"
#include "os/error.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class FastFileWholeTest : public ReportsTest {
protected:
    std::string path() const { return m_directory.path("file"); }
    std::string content() const { return m_directory.content("file"); }

    // Names in the directory, sorted.
    Texts entries() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_directory.path())) {
            names.insert(entry.path().filename().string());
        }
        return {names.begin(), names.end()};
    }

    std::int64_t write(const std::string& text, int mode) {
        return MFastFile_WriteAtOnce(path().c_str(), text.data(), text.size(), mode);
    }

    TemporaryDirectory m_directory;
};

TEST_F(FastFileWholeTest, ReadsIntoABuffer) {
    m_directory.file("file", "0123456789");
    char buffer[20];
    EXPECT_EQ(4, MFastFile_ReadAtOnce(path().c_str(), buffer, 4));
    EXPECT_EQ("0123", std::string(buffer, 4));
    EXPECT_EQ(10, MFastFile_ReadAtOnce(path().c_str(), buffer, 20));
}

TEST_F(FastFileWholeTest, ReadsIntoAString) {
    std::string all;
    for (int i = 0; i < 100000; ++i) all += static_cast<char>(i);
    m_directory.file("file", all);
    std::string text = "old";
    EXPECT_EQ(100000, MFastFile_ReadAtOnce(path().c_str(), text));
    EXPECT_EQ(all, text);
    m_directory.file("file", "");
    EXPECT_EQ(0, MFastFile_ReadAtOnce(path().c_str(), text));
    EXPECT_EQ("", text);
}

TEST_F(FastFileWholeTest, ReadingLinesNormalisesTheirEnds) {
    m_directory.file("file", "a\r\nb\rc\n\n\r\r\n\r");
    std::string text;
    EXPECT_EQ(10, MFastFile_ReadLinesAtOnce(path().c_str(), text));
    EXPECT_EQ("a\nb\nc\n\n\n\n\n", text);
    char buffer[20];
    EXPECT_EQ(10, MFastFile_ReadLinesAtOnce(path().c_str(), buffer, 20));
    EXPECT_EQ(text, std::string(buffer, 10));
}

TEST_F(FastFileWholeTest, WritingLinesMakesCrLf) {
    for (const std::string text : {"a\n", "a\r", "a\r\n"}) {
        EXPECT_EQ(3, MFastFile_WriteLinesAtOnce(path().c_str(), text.data(), text.size(), 2));
        EXPECT_EQ("a\r\n", content());
    }
    const std::string mixed = "a\n\r\r\n\n\nb";
    EXPECT_EQ(12, MFastFile_WriteLinesAtOnce(path().c_str(), mixed.data(), mixed.size(), 2));
    EXPECT_EQ("a\r\n\r\n\r\n\r\n\r\nb", content());
    EXPECT_EQ(0, MFastFile_WriteLinesAtOnce(path().c_str(), "", 0, 2));
    EXPECT_EQ("", content());
}

TEST_F(FastFileWholeTest, ModesDifferInWhatBecomesOfTheOldFile) {
    EXPECT_EQ(3, write("one", 0));
    EXPECT_EQ(3, write("two", 1));
    EXPECT_EQ("onetwo", content());
    EXPECT_EQ(1, write("3", 2));
    EXPECT_EQ("3", content());
    EXPECT_EQ(-1, write("x", 0));
    EXPECT_EQ((Texts{"openwritefile(): CreateFile(\"" + path() +
                         "\") failed: " + opening_error(path(), os::OpenMode::CreateNew),
                     "MFastFile_WriteAtOnce(): openwritefile(" + path() + ", 0) failed"}),
              trace_reports());
    EXPECT_EQ(-1, write("x", 9));
    EXPECT_EQ("openwritefile(): unknown mode 9 for " + path(), trace_reports().front());
}

TEST_F(FastFileWholeTest, TheFlagFlushesAndDoesNotWriteThrough) {
    FaultyFiles files;
    EXPECT_EQ(1, write("x", 2 | MFASTFILE_FLUSH));
    EXPECT_EQ(1, files.calls("flush"));
    EXPECT_FALSE(files.last_open_was_write_through());
    EXPECT_EQ(1, write("x", 2));
    EXPECT_EQ(1, files.calls("flush"));
}

TEST_F(FastFileWholeTest, WritingByRenameLeavesNothingBehind) {
    FaultyFiles files;
    EXPECT_EQ(3, write("new", MFASTFILE_BY_RENAME));
    EXPECT_EQ(5, write("newer", MFASTFILE_BY_RENAME | MFASTFILE_FLUSH));
    EXPECT_EQ("newer", content());
    EXPECT_EQ(Texts{"file"}, entries());
    EXPECT_EQ(2, files.calls("flush"));
}

TEST_F(FastFileWholeTest, WithoutADirectoryTheTemporaryFileIsInTheCurrentOne) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(m_directory.path());
    EXPECT_EQ(3, MFastFile_WriteAtOnce("file", "new", 3, MFASTFILE_BY_RENAME));
    std::filesystem::current_path(before);
    EXPECT_EQ("new", content());
    EXPECT_EQ(Texts{"file"}, entries());
}

struct Failure {
    const char* operation;
    int error;
    Texts reports;
};

TEST_F(FastFileWholeTest, EveryCallOfAReadMayFail) {
    m_directory.file("file", "0123456789");
    const std::string name = "\"" + path() + "\"";
    const std::string read_at_once =
        "MFastFile_ReadAtOnce(): MFastFile_ReadAtOnce(" + name + ",..,10) failed";
    const Failure cases[] = {
        {"find",
         ENOENT,
         {"file_type(): _findfirst(" + name + ") failed: " + os::error_text(ENOENT),
          "MFastFile_ReadAtOnce(): file_size(" + name + ") returned -1"}},
        {"info", EIO, {"MFastFile_ReadAtOnce(): file_size(" + name + ") returned -1"}},
        {"open",
         EACCES,
         {"openfile(): CreateFile(" + name + ") failed: 13",
          "MFastFile_ReadAtOnce(): openfile(" + name + ") failed.", read_at_once}},
        {"read",
         EIO,
         {"read64(): ReadFile() failed: 5", "MFastFile_ReadAtOnce(): ReadFile(..,10,..) failed for " + name,
          read_at_once}},
        {"close", EIO, {"MFastFile_ReadAtOnce(): CloseHandle() failed for " + name + ": 5", read_at_once}},
    };
    for (const Failure& failure : cases) {
        FaultyFiles files;
        files.fail(failure.operation, 1, failure.error);
        std::string text;
        EXPECT_EQ(-1, MFastFile_ReadAtOnce(path().c_str(), text)) << failure.operation;
        EXPECT_EQ("", text);
        EXPECT_EQ(failure.reports, trace_reports());
        EXPECT_EQ(0, files.open_handles());

        files.fail(failure.operation, 1, failure.error);
        EXPECT_EQ(-1, MFastFile_ReadLinesAtOnce(path().c_str(), text));
        EXPECT_TRUE(trace_reports().back().starts_with("MFastFile_ReadLinesAtOnce(): "));
        EXPECT_EQ("", text);
    }
}

TEST_F(FastFileWholeTest, ReadingLinesReportsUnderItsName) {
    char buffer[4];
    EXPECT_EQ(-1, MFastFile_ReadLinesAtOnce(path().c_str(), buffer, 4));
    EXPECT_EQ("MFastFile_ReadLinesAtOnce(): MFastFile_ReadAtOnce(\"" + path() + "\",..,4) failed",
              trace_reports().back());
    std::string text;
    EXPECT_EQ(-1, MFastFile_ReadLinesAtOnce(path().c_str(), text));
    EXPECT_EQ("MFastFile_ReadLinesAtOnce(): file_size(\"" + path() + "\") returned -1",
              trace_reports().back());
}

TEST_F(FastFileWholeTest, EveryCallOfAWriteMayFail) {
    const Failure cases[] = {
        {"open",
         ENOSPC,
         {"openwritefile(): CreateFile(\"" + path() + "\") failed: 28",
          "MFastFile_WriteAtOnce(): openwritefile(" + path() + ", 2) failed"}},
        {"write", ENOSPC, {"write64(): WriteFile() failed: 28", "MFastFile_WriteAtOnce(): write64() failed"}},
        {"flush", EIO, {"MFastFile_WriteAtOnce(): FlushFileBuffers() failed: 5"}},
        {"close", EIO, {"MFastFile_WriteAtOnce(): CloseHandle() failed: 5"}},
    };
    for (const Failure& failure : cases) {
        FaultyFiles files;
        files.fail(failure.operation, 1, failure.error);
        EXPECT_EQ(-1, write("abc", 2 | MFASTFILE_FLUSH)) << failure.operation;
        EXPECT_EQ(failure.reports, trace_reports());
        EXPECT_EQ(0, files.open_handles());
    }
}

TEST_F(FastFileWholeTest, UnderTheRenameModeTheOldFileStaysWhole) {
    const Failure cases[] = {
        {"make_temporary", EACCES, {"MFastFile_WriteAtOnce(): GetTempFileName() failed:13"}},
        {"open", EMFILE, {"", "MFastFile_WriteAtOnce(): openwritefile(" + path() + ", 2) failed"}},
        {"write", ENOSPC, {"write64(): WriteFile() failed: 28", "MFastFile_WriteAtOnce(): write64() failed"}},
        {"flush", EIO, {"MFastFile_WriteAtOnce(): FlushFileBuffers() failed: 5"}},
        {"close", EIO, {"MFastFile_WriteAtOnce(): CloseHandle() failed: 5"}},
        {"rename", EACCES, {"", ""}},
    };
    for (const Failure& failure : cases) {
        m_directory.file("file", "old");
        FaultyFiles files;
        files.fail(failure.operation, 1, failure.error);
        EXPECT_EQ(-1, write("new", MFASTFILE_BY_RENAME)) << failure.operation;
        const Texts reports = trace_reports();
        ASSERT_EQ(failure.reports.size(), reports.size()) << failure.operation;
        for (std::size_t i = 0; i < reports.size(); ++i) {
            if (!failure.reports[i].empty()) {
                EXPECT_EQ(failure.reports[i], reports[i]);
            }
        }
        EXPECT_EQ("old", content());
        EXPECT_EQ(Texts{"file"}, entries());
        EXPECT_EQ(0, files.open_handles());
    }
}

TEST_F(FastFileWholeTest, ARenameThatFailsIsReportedAtBothLevels) {
    FaultyFiles files;
    files.fail("rename", 1, EACCES);
    EXPECT_EQ(-1, write("new", MFASTFILE_BY_RENAME));
    const Texts reports = trace_reports();
    ASSERT_EQ(2U, reports.size());
    EXPECT_TRUE(reports[0].starts_with("file_rename(): MoveFileEx(" + m_directory.path()));
    EXPECT_TRUE(reports[0].ends_with(".tmp," + path() + ") failed: 13")) << reports[0];
    EXPECT_TRUE(reports[1].starts_with("MFastFile_WriteAtOnce(): file_rename(" + m_directory.path()));
    EXPECT_TRUE(reports[1].ends_with(".tmp," + path() + ") failed: " + os::error_text(EACCES))) << reports[1];
}

TEST_F(FastFileWholeTest, AShortWriteIsNoWholeFile) {
    m_directory.file("file", "old");
    FaultyFiles files;
    files.shorten(2);
    EXPECT_EQ(-1, write("new", MFASTFILE_BY_RENAME));
    EXPECT_EQ(Texts{"MFastFile_WriteAtOnce(): wrote only 2 bytes instead of 3 bytes"}, trace_reports());
    EXPECT_EQ("old", content());
    EXPECT_EQ(2, write("new", 2));
    EXPECT_EQ("ne", content());
}

TEST_F(FastFileWholeTest, WritingLinesReportsUnderItsName) {
    FaultyFiles files;
    files.fail("write", 1, ENOSPC);
    EXPECT_EQ(-1, MFastFile_WriteLinesAtOnce(path().c_str(), "a\n", 2, 6));
    EXPECT_EQ("MFastFile_WriteLinesAtOnce(): MFastFile_WriteAtOnce(\"" + path() + "\",..,3,6) failed",
              trace_reports().back());
}

TEST_F(FastFileWholeTest, CopiesFilesOfAnySize) {
    for (const std::size_t size : {0U, 1U, 100000U}) {
        m_directory.file("from", std::string(size, 'x'));
        EXPECT_TRUE(MFastFile_CopyFile(m_directory.path("from").c_str(), path().c_str(), 2));
        EXPECT_EQ(std::string(size, 'x'), content());
    }
    EXPECT_TRUE(MFastFile_CopyFile(m_directory.path().c_str(), path().c_str(), 2));
    EXPECT_EQ("", content());
}

TEST_F(FastFileWholeTest, ACopyThatFailsTellsWhere) {
    const std::string from = m_directory.path("from");
    EXPECT_FALSE(MFastFile_CopyFile(from.c_str(), path().c_str(), 2));
    EXPECT_EQ("MFastFile_CopyFile(): file_size(\"" + from + "\") failed", trace_reports().back());
    m_directory.file("from", "12345");
    FaultyFiles files;
    files.fail("read", 1, EIO);
    EXPECT_FALSE(MFastFile_CopyFile(from.c_str(), path().c_str(), 2));
    EXPECT_EQ("MFastFile_CopyFile(): MFastFile_ReadAtOnce(\"" + from + "\",..,5) failed",
              trace_reports().back());
    for (const std::size_t size : {5U, 0U}) {
        m_directory.file("from", std::string(size, 'x'));
        files.fail("open", size > 0 ? 2 : 1, EACCES);
        EXPECT_FALSE(MFastFile_CopyFile(from.c_str(), path().c_str(), 2));
        EXPECT_EQ("MFastFile_CopyFile(): MFastFile_WriteAtOnce(\"" + path() + "\",.." + "," +
                      std::to_string(size) + ",2) failed",
                  trace_reports().back());
    }
}

}  // namespace
