#include <gtest/gtest.h>

#include "environment_variable.h"
#include "os/directories.h"

namespace {

TEST(DirectoriesTestWin32, TheStateDirectoryFollowsTheEnvironment) {
    {
        const EnvironmentVariable local("LOCALAPPDATA", "C:\\Users\\somebody\\AppData\\Local");
        EXPECT_EQ("C:\\Users\\somebody\\AppData\\Local\\m2zendrix", os::user_state_directory());
    }
    const EnvironmentVariable no_local("LOCALAPPDATA", nullptr);
    EXPECT_EQ("", os::user_state_directory());
}

TEST(DirectoriesTestWin32, TheTemporaryDirectoryEndsInASeparator) {
    const EnvironmentVariable variable("TMP", "C:\\a\\b");
    EXPECT_EQ("C:\\a\\b\\", os::temporary_directory());
}

}  // namespace
