#include "os/path.h"

#include <gtest/gtest.h>

#include "os/directories.h"

namespace {

TEST(PathTest, SeparatorsBecomeTheSystemsOwn) {
    EXPECT_EQ("/a/b/c.ini", os::native_path("/a\\b\\c.ini"));
    EXPECT_EQ("", os::native_path(""));
}

TEST(PathTest, FullPathIsResolvedByItsText) {
    std::string full;
    EXPECT_TRUE(os::full_path("\\a/./b\\..//c/", full));
    EXPECT_EQ("/a/c", full);
    EXPECT_TRUE(os::full_path("/../..", full));
    EXPECT_EQ("/", full);
    std::string current;
    EXPECT_TRUE(os::current_directory(current));
    EXPECT_TRUE(os::full_path("x", full));
    EXPECT_EQ(current + "/x", full);
    EXPECT_FALSE(os::has_drive_letters());
}

TEST(PathTest, AVerbatimPathIsTakenAsItIs) {
    EXPECT_TRUE(os::is_verbatim("\\\\?\\/a\\b"));
    EXPECT_FALSE(os::is_verbatim("\\\\a\\b"));
    EXPECT_EQ("/a\\b", os::native_path("\\\\?\\/a\\b"));
}

TEST(PathTest, AnEntrysPathIsVerbatimWhereItMust) {
    EXPECT_EQ("/a\\b", os::entry_path("/a\\", "b"));
    EXPECT_EQ("/a/*", os::entry_path("/a/", "*"));
    EXPECT_EQ("\\\\?\\/a/b\\c", os::entry_path("/a\\", "b\\c"));
    EXPECT_EQ("\\\\?\\/a/*.*", os::entry_path("/a\\", "*.*"));
    EXPECT_EQ("\\\\?\\/a\\/b", os::entry_path("\\\\?\\/a\\/", "b"));
}

}  // namespace
