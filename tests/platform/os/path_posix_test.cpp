#include <gtest/gtest.h>

#include "os/path.h"

namespace {

TEST(PathTestPosix, ThereAreNoDrives) {
    std::string full;
    EXPECT_TRUE(os::full_path("\\a/./b\\..//c/", full));
    EXPECT_EQ("/a/c", full);
    EXPECT_FALSE(os::has_drive_letters());
}

TEST(PathTestPosix, AVerbatimPathIsTakenAsItIs) {
    EXPECT_TRUE(os::is_verbatim("\\\\?\\/a\\b"));
    EXPECT_EQ("/a\\b", os::native_path("\\\\?\\/a\\b"));
}

TEST(PathTestPosix, AnEntrysPathIsVerbatimWhereItMust) {
    EXPECT_EQ("/a/*", os::entry_path("/a/", "*"));
    EXPECT_EQ("\\\\?\\/a/b\\c", os::entry_path("/a\\", "b\\c"));
    EXPECT_EQ("\\\\?\\/a/*.*", os::entry_path("/a\\", "*.*"));
    EXPECT_EQ("\\\\?\\/a\\/b", os::entry_path("\\\\?\\/a\\/", "b"));
}

}  // namespace
