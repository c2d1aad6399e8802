// A disk that is full, files removed while they are read, and paths longer than other systems take.

#include <filesystem>

#include "MIniData.h"
#include "deep_path.h"
#include "fastfile.h"
#include "fileops.h"
#include "mdirectorywalker.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class HostileFilesTestPosix : public ReportsTest {
protected:
    TemporaryDirectory m_directory;
};

TEST_F(HostileFilesTestPosix, AFileThatIsRemovedWhileItIsReadIsReadToItsEnd) {
    MFastFileReader reader(m_directory.file("file", std::string(10000, 'x') + "\nlast").c_str());
    std::string line;
    EXPECT_TRUE(reader.ReadLine(line));
    std::filesystem::remove(m_directory.path("file"));
    EXPECT_TRUE(reader.ReadLine(line));
    EXPECT_EQ("last", line);
    EXPECT_TRUE(reader.IsEOF());
}

// The device takes no byte, as a disk that is full.
TEST_F(HostileFilesTestPosix, AFullDiskIsReported) {
    const char* const device = "/dev/full";
    const Texts cause{"write64(): WriteFile() failed: 28"};
    EXPECT_EQ(-1, MFastFile_WriteAtOnce(device, "x", 1, MFASTFILE_OVERWRITE));
    EXPECT_EQ((Texts{cause[0], "MFastFile_WriteAtOnce(): write64() failed"}), trace_reports());
    const std::string large(30000, 'x');
    MFastFileWriter writer(device, MFASTFILE_APPEND);
    EXPECT_EQ(-1, writer.Write(large.data(), large.size()));
    EXPECT_EQ("write64(): WriteFile() failed: 28", trace_reports().front());
    EXPECT_EQ(1, writer.WriteChar('x'));
    EXPECT_TRUE(writer.Close());
    EXPECT_EQ((Texts{cause[0], "MFastFileWriter::write_to_disk(): write64() failed"}), trace_reports());
}

TEST_F(HostileFilesTestPosix, AModelSurvivesAFullDisk) {
    MIniData ini(m_directory.path("x.ini"));
    ini.SetLongEntry("s", "a", 1);
    std::filesystem::create_symlink("/dev/full", m_directory.path("x.ini"));
    EXPECT_FALSE(ini.Save());
    EXPECT_EQ(4U, trace_reports().size());
    EXPECT_TRUE(ini.IsNew());
    EXPECT_FALSE(ini.IsSaved());
    std::filesystem::remove(m_directory.path("x.ini"));
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ("[s]\r\na=1\r\n", m_directory.content("x.ini"));
}

TEST_F(HostileFilesTestPosix, APathOfFourThousandBytesWorks) {
    const std::string path = deep_path(m_directory.path(), 4000);
    ASSERT_EQ(4000U, path.size());
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    MIniData ini(MINIDATA_SAVE_BY_RENAME);
    EXPECT_TRUE(ini.Open(path));
    EXPECT_TRUE(ini.SetLongEntry("s", "a", 1));
    EXPECT_TRUE(ini.Save());
    EXPECT_TRUE(ini.Reload());
    EXPECT_TRUE(ini.EntryExists("s", "a"));
    EXPECT_EQ(10, file_size(path.c_str()));
    EXPECT_EQ('-', file_type(path.c_str()));
    MDirectoryWalker walker;
    EXPECT_TRUE(walker.SetPath(std::filesystem::path(path).parent_path().c_str()));
    EXPECT_STREQ(".", walker.GetFirst(nullptr));
    EXPECT_STREQ("..", walker.GetNext(nullptr));
    EXPECT_STREQ(file_basename(path.c_str()), walker.GetNext(nullptr));
    // The buffers that the names of these two go to hold 260 bytes.
    char target[260] = "untouched";
    EXPECT_EQ(nullptr, file_fullpath(path.c_str(), target));
    EXPECT_STREQ("untouched", target);
    EXPECT_FALSE(file_is_inside(path.c_str(), m_directory.path().c_str()));
    EXPECT_EQ(nullptr, file_relative_path("/x", path.c_str(), nullptr));
    EXPECT_TRUE(file_remove(path.c_str()));
}

}  // namespace
