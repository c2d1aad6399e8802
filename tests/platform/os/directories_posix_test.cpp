#include <gtest/gtest.h>

#include "environment_variable.h"
#include "os/directories.h"

namespace {

TEST(DirectoriesTestPosix, TheStateDirectoryFollowsTheEnvironment) {
    const EnvironmentVariable home("HOME", "/home/somebody");
    {
        const EnvironmentVariable state("XDG_STATE_HOME", "/state");
        EXPECT_EQ("/state/m2zendrix", os::user_state_directory());
    }
    {
        const EnvironmentVariable state("XDG_STATE_HOME", "not/absolute");
        EXPECT_EQ("/home/somebody/.local/state/m2zendrix", os::user_state_directory());
    }
    const EnvironmentVariable no_state("XDG_STATE_HOME", nullptr);
    EXPECT_EQ("/home/somebody/.local/state/m2zendrix", os::user_state_directory());
    const EnvironmentVariable no_home("HOME", nullptr);
    EXPECT_EQ("", os::user_state_directory());
}

std::string temporary_by(const char* value) {
    const EnvironmentVariable variable("TMPDIR", value);
    return os::temporary_directory();
}

TEST(DirectoriesTestPosix, TheTemporaryDirectoryEndsInASeparator) {
    EXPECT_EQ("/a/b/", temporary_by("/a/b"));
    EXPECT_EQ("/a/b/", temporary_by("/a/b/"));
    EXPECT_EQ("/tmp/", temporary_by(""));
    EXPECT_EQ("/tmp/", temporary_by(nullptr));
}

}  // namespace
