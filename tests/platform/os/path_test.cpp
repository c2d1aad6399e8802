#include "os/path.h"

#include <gtest/gtest.h>

namespace {

TEST(PathTest, SeparatorsBecomeTheSystemsOwn) {
    EXPECT_EQ("/a/b/c.ini", os::native_path("/a\\b\\c.ini"));
    EXPECT_EQ("", os::native_path(""));
}

}  // namespace
