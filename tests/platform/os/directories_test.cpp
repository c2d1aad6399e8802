#include "os/directories.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "temporary_directory.h"

namespace {

TEST(DirectoriesTest, TheStateDirectoryFollowsTheEnvironment) {
    setenv("HOME", "/home/somebody", 1);
    setenv("XDG_STATE_HOME", "/state", 1);
    EXPECT_EQ("/state/m2zendrix", os::user_state_directory());
    setenv("XDG_STATE_HOME", "not/absolute", 1);
    EXPECT_EQ("/home/somebody/.local/state/m2zendrix", os::user_state_directory());
    unsetenv("XDG_STATE_HOME");
    EXPECT_EQ("/home/somebody/.local/state/m2zendrix", os::user_state_directory());
    unsetenv("HOME");
    EXPECT_EQ("", os::user_state_directory());
}

TEST(DirectoriesTest, MakesAllThatIsMissing) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(os::make_directories(directory.path() + "\\a/b\\c"));
    EXPECT_TRUE(std::filesystem::is_directory(directory.path("a/b/c")));
    EXPECT_TRUE(os::make_directories(directory.path("a/b/c/")));
    directory.file("plain", "x");
    EXPECT_FALSE(os::make_directories(directory.path("plain")));
    EXPECT_FALSE(os::make_directories(directory.path("plain/below")));
}

TEST(DirectoriesTest, TheTemporaryDirectoryEndsInASeparator) {
    const char* const before = std::getenv("TMPDIR");
    const std::string saved = before ? before : "";
    setenv("TMPDIR", "/a/b", 1);
    EXPECT_EQ("/a/b/", os::temporary_directory());
    setenv("TMPDIR", "/a/b/", 1);
    EXPECT_EQ("/a/b/", os::temporary_directory());
    setenv("TMPDIR", "", 1);
    EXPECT_EQ("/tmp/", os::temporary_directory());
    unsetenv("TMPDIR");
    EXPECT_EQ("/tmp/", os::temporary_directory());
    if (before) setenv("TMPDIR", saved.c_str(), 1);
}

}  // namespace
