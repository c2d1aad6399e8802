#include <filesystem>

#include "fileops.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class FileopsTestPosix : public ReportsTest {
protected:
    TemporaryDirectory m_directory;
};

TEST_F(FileopsTestPosix, ALiteralNameWinsOverAPattern) {
    std::filesystem::create_directory(m_directory.path("a.txt"));
    m_directory.file("*.txt", "abc");
    EXPECT_EQ('-', file_type(m_directory.path("*.txt").c_str()));
    EXPECT_EQ(3, file_size(m_directory.path("*.txt").c_str()));
    m_directory.file("[a].txt", "x");
    EXPECT_EQ('-', file_type(m_directory.path("[a].t?t").c_str()));
}

TEST_F(FileopsTestPosix, ThereAreNoDrives) { EXPECT_EQ(nullptr, file_drive("c:\\a")); }

}  // namespace
