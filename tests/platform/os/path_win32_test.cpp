#include <gtest/gtest.h>

#include "os/path.h"

namespace {

TEST(PathTestWin32, ThereAreDrives) {
    EXPECT_TRUE(os::has_drive_letters());
    std::string full;
    EXPECT_TRUE(os::full_path("c:/a/../b", full));
    EXPECT_EQ("c:\\b", full);
    EXPECT_TRUE(os::full_path("\\\\server\\share\\a\\..", full));
    EXPECT_TRUE(full.starts_with("\\\\server\\share")) << full;
}

TEST(PathTestWin32, AVerbatimPathIsTakenAsItIs) {
    EXPECT_EQ("\\\\?\\C:\\a/b", os::native_path("\\\\?\\C:\\a/b"));
}

// What the system would take off a name, or take for a device, or for too long.
TEST(PathTestWin32, AnEntrysPathIsVerbatimWhereItMust) {
    for (const char* const name : {"b.", "b ", "nul", "Com1.txt", "LPT9"}) {
        EXPECT_EQ(std::string("\\\\?\\C:\\a\\") + name, os::entry_path("C:/a/", name));
    }
    for (const char* const name : {".", "..", ".b", "null", "com", "com0", "com10", "comx"}) {
        EXPECT_EQ(std::string("C:/a/") + name, os::entry_path("C:/a/", name));
    }
    const std::string longest(247 - 5, 'x');
    EXPECT_EQ("C:/a/" + longest, os::entry_path("C:/a/", longest));
    EXPECT_EQ("\\\\?\\C:\\a\\" + longest + "x", os::entry_path("C:/a/", longest + "x"));
    EXPECT_EQ("\\\\server\\share\\b.", os::entry_path("\\\\server\\share\\", "b."));
}

}  // namespace
