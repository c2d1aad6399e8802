#include <windows.h>

#include "fileops.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class FileopsTestWin32 : public ReportsTest {
protected:
    TemporaryDirectory m_directory;
};

TEST_F(FileopsTestWin32, ADriveIsALetterAndAColon) {
    EXPECT_STREQ("c:", file_drive("c:\\a"));
    EXPECT_STREQ("Z:", file_drive("Z:"));
    for (const char* const path : {"", "c", "c\\:", "1:\\a", "\\a", ":a"})
        EXPECT_EQ(nullptr, file_drive(path)) << path;
}

TEST_F(FileopsTestWin32, AttributesTellTheType) {
    const std::string path = m_directory.file("file", "x");
    for (const DWORD attribute : {FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM}) {
        ASSERT_TRUE(SetFileAttributesA(path.c_str(), attribute));
        EXPECT_EQ(' ', file_type(path.c_str()));
    }
    ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ('-', file_type(path.c_str()));
    EXPECT_TRUE(file_make_writable(path.c_str()));
    EXPECT_EQ(0U, GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_READONLY);
}

}  // namespace
