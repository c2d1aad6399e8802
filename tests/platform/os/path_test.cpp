#include "os/path.h"

#include <gtest/gtest.h>

#include "os/directories.h"

namespace {

// The path with the system's own separators.
std::string own(std::string path) {
    for (char& c : path) {
        if (c == '/') c = os::native_separator();
    }
    return path;
}

// The system's root.
std::string root() {
    std::string full;
    EXPECT_TRUE(os::full_path("/", full));
    EXPECT_TRUE(full.ends_with(os::native_separator()));
    return full;
}

TEST(PathTest, SeparatorsBecomeTheSystemsOwn) {
    EXPECT_EQ(own("/a/b/c.ini"), os::native_path("/a\\b/c.ini"));
    EXPECT_EQ("", os::native_path(""));
}

TEST(PathTest, FullPathIsResolvedByItsText) {
    std::string full;
    EXPECT_TRUE(os::full_path("\\a/./b\\..//c", full));
    EXPECT_EQ(root() + own("a/c"), full.substr(0, full.find_last_not_of("\\/") + 1));
    EXPECT_TRUE(os::full_path("/../..", full));
    EXPECT_EQ(root(), full);
    std::string current;
    EXPECT_TRUE(os::current_directory(current));
    EXPECT_TRUE(os::full_path("x", full));
    EXPECT_EQ(current + own("/x"), full);
}

TEST(PathTest, AVerbatimPathIsKnownByItsBeginning) {
    EXPECT_TRUE(os::is_verbatim("\\\\?\\a"));
    EXPECT_FALSE(os::is_verbatim("\\\\a\\b"));
    EXPECT_FALSE(os::is_verbatim(""));
}

TEST(PathTest, AnEntrysPathIsDirectoryAndName) {
    EXPECT_EQ("/a\\b", os::entry_path("/a\\", "b"));
    EXPECT_EQ("/a/b", os::entry_path("/a/", "b"));
    const std::string verbatim = std::string("\\\\?\\a") + os::native_separator();
    EXPECT_EQ(verbatim + "b", os::entry_path(verbatim, "b"));
}

}  // namespace
