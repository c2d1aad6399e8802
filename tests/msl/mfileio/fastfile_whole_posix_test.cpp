#include <filesystem>

#include "fastfile.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class FastFileWholeTestPosix : public ReportsTest {
protected:
    std::filesystem::perms permissions() const { return std::filesystem::status(m_path).permissions(); }

    TemporaryDirectory m_directory;
    const std::string m_path = m_directory.file("file", "old");
};

TEST_F(FastFileWholeTestPosix, WritingByRenameKeepsTheRightsOfTheOldFile) {
    using std::filesystem::perms;
    for (const perms rights :
         {perms::owner_read | perms::owner_write, perms::owner_read | perms::group_read}) {
        std::filesystem::permissions(m_path, rights);
        EXPECT_EQ(3, MFastFile_WriteAtOnce(m_path.c_str(), "new", 3, MFASTFILE_BY_RENAME));
        EXPECT_EQ(rights, permissions());
    }
    EXPECT_EQ("new", m_directory.content("file"));
}

}  // namespace
