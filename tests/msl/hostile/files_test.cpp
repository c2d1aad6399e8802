// Directories where files should be, files that vanish or shrink, and paths of thousands of bytes.

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "MIniData.h"
#include "deep_path.h"
#include "fastfile.h"
#include "faulty_files.h"
#include "fileops.h"
#include "mdirectorywalker.h"
#include "opening_error.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class HostileFilesTest : public ReportsTest {
protected:
    // Every reading and writing of this path fails, each with its reports, and leaves no handle and no file
    // behind.
    void expect_no_file_at(const std::string& path) {
        const std::string write_error = opening_error(path, os::OpenMode::Truncate);
        FaultyFiles files;
        expect_no_reading(path);
        for (const int mode : {0, 1, 2, 4, 6}) {
            EXPECT_EQ(-1, MFastFile_WriteAtOnce(path.c_str(), "x", 1, mode));
            const Texts reports = trace_reports();
            ASSERT_EQ(2U, reports.size()) << mode;
            // Before an existing entry is looked at it counts that a new one was wanted.
            if ((mode & 3) != 0) {
                EXPECT_EQ("openwritefile(): CreateFile(\"" + path + "\") failed: " + write_error, reports[0]);
            }
        }
        EXPECT_EQ(-1, MFastFile_WriteAtOnce(path.c_str(), "x", 1, MFASTFILE_BY_RENAME));
        EXPECT_FALSE(trace_reports().empty());
        EXPECT_EQ(0, files.open_handles());
    }

    void expect_no_reading(const std::string& path) {
        const std::string error = opening_error(path, os::OpenMode::Read);
        const std::string cause = "openfile(): CreateFile(\"" + path + "\") failed: " + error;
        MFastFileReader reader;
        EXPECT_FALSE(reader.Open(path.c_str()));
        EXPECT_EQ((Texts{cause, "MFastFileReader::Open(): openfile(\"" + path + "\") failed: " + error}),
                  trace_reports());
        char c = '?';
        EXPECT_EQ(-1, MFastFile_ReadAtOnce(path.c_str(), &c, 1));
        EXPECT_EQ((Texts{cause, "MFastFile_ReadAtOnce(): openfile(\"" + path + "\") failed."}),
                  trace_reports());
    }

    std::size_t entries() const {
        const std::filesystem::directory_iterator all(m_directory.path());
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    TemporaryDirectory m_directory;
};

TEST_F(HostileFilesTest, ADirectoryIsNoFile) {
    std::filesystem::create_directory(m_directory.path("sub"));
    const std::string path = m_directory.path("sub");
    expect_no_file_at(path);
    EXPECT_EQ(1U, entries());
    std::string text = "old";
    EXPECT_EQ(-1, MFastFile_ReadAtOnce(path.c_str(), text));
    EXPECT_EQ("", text);
    EXPECT_EQ("MFastFile_ReadAtOnce(): MFastFile_ReadAtOnce(\"" + path + "\",..,0) failed",
              trace_reports().back());
    char buffer[10];
    EXPECT_EQ(nullptr, file_read_first_line(path.c_str(), buffer, 10));
    EXPECT_FALSE(file_remove(path.c_str()));
    EXPECT_FALSE(file_rename(m_directory.file("file", "x").c_str(), path.c_str()));
    EXPECT_EQ(1U, trace_reports().size());
    EXPECT_EQ("x", m_directory.content("file"));
}

TEST_F(HostileFilesTest, AFileIsNoDirectory) {
    const std::string path = m_directory.file("file", "x") + "/below";
    expect_no_file_at(path);
    MDirectoryWalker walker;
    EXPECT_FALSE(walker.SetPath(m_directory.path("file").c_str()));
    EXPECT_FALSE(file_exists(path.c_str()));
    EXPECT_EQ(-1, file_size(path.c_str()));
    EXPECT_EQ(1U, trace_reports().size());
    EXPECT_EQ("x", m_directory.content("file"));
}

TEST_F(HostileFilesTest, AnIniFileThatIsADirectoryIsNeitherReadNorWritten) {
    MIniData ini(MINIDATA_SAVE_BY_RENAME);
    EXPECT_TRUE(ini.Open(m_directory.path("x.ini")));
    std::filesystem::create_directory(m_directory.path("x.ini"));
    EXPECT_FALSE(ini.Save());
    EXPECT_TRUE(ini.IsNew());
    EXPECT_EQ(1U, entries());
    EXPECT_FALSE(ini.Reload());
    EXPECT_EQ("MIniData::Open(): MFastFileReader::Open() failed", trace_reports().back());
}

// What happens to a file between two calls of one operation.
TEST_F(HostileFilesTest, AFileThatVanishesIsReported) {
    const std::string path = m_directory.path("file");
    const std::function<void()> operations[] = {
        [&] {
            std::string text;
            EXPECT_EQ(-1, MFastFile_ReadAtOnce(path.c_str(), text));
            EXPECT_EQ("", text);
        },
        [&] { EXPECT_FALSE(MFastFile_CopyFile(path.c_str(), m_directory.path("copy").c_str(), 2)); },
        [&] {
            MIniData ini;
            EXPECT_FALSE(ini.Open(path));
            EXPECT_FALSE(ini.IsOpen());
        },
    };
    for (const auto& operation : operations) {
        m_directory.file("file", "[s]\n");
        FaultyFiles files;
        files.fail("open", 1, ENOENT);
        files.on_fault([&] { std::filesystem::remove(path); });
        operation();
        EXPECT_EQ("openfile(): CreateFile(\"" + path + "\") failed: 2", trace_reports().front());
        EXPECT_EQ(0, files.open_handles());
    }
}

TEST_F(HostileFilesTest, AFileThatShrinksWhileItIsReadEndsWhereItEnds) {
    MFastFileReader reader(m_directory.file("file", std::string(20000, 'x')).c_str());
    char c = '?';
    EXPECT_EQ(1, reader.ReadChar(c));
    std::filesystem::resize_file(m_directory.path("file"), 9000);
    std::string line;
    EXPECT_TRUE(reader.ReadLine(line));
    EXPECT_EQ(8999U, line.size());
    EXPECT_TRUE(reader.IsEOF());
}

TEST_F(HostileFilesTest, APathThatTheSystemRefusesIsReportedWhole) {
    const std::string too_long = deep_path(m_directory.path(), 5000);
    expect_no_file_at(too_long);
    expect_no_file_at(m_directory.path(std::string(4000, 'x')));
    std::vector<os::DirectoryEntry> found;
    EXPECT_FALSE(os::files().find(too_long.c_str(), found));
    const std::string reason = os::error_text(os::last_error());
    EXPECT_EQ(-1, file_type(too_long.c_str()));
    EXPECT_EQ(Texts{"file_type(): _findfirst(\"" + too_long + "\") failed: " + reason}, trace_reports());
    EXPECT_FALSE(file_exists(too_long.c_str()));
    EXPECT_EQ(0U, entries());
    // As a missing file it is a new model, which can't be saved.
    MIniData ini(too_long);
    EXPECT_TRUE(ini.IsOpen() && ini.IsNew());
    EXPECT_FALSE(ini.Save());
    EXPECT_EQ("MIniData::Save(): MFastFile_WriteLinesAtOnce(\"" + too_long.substr(0, 40) + "\") failed",
              trace_reports().back());
}

TEST_F(HostileFilesTest, NamesOfFourThousandBytesAreTakenApart) {
    std::string path;
    while (path.size() < 4000) path += "ab\\";
    std::string target(path.size() + 2, 'x');
    EXPECT_STREQ(path.c_str(), file_dirname(path.c_str(), target.data()));
    EXPECT_STREQ("", file_basename(path.c_str()));
    EXPECT_STREQ("ab", file_first_part(path.c_str(), target.data()));
    std::string up;
    while (up.size() < 4000) up += "..\\";
    std::string joined = path;
    joined.resize(10000);
    EXPECT_EQ(nullptr, file_join(joined.data(), up.c_str()));
    EXPECT_EQ(path, joined.c_str());
}

}  // namespace
