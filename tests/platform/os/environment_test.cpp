#include "os/environment.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

TEST(OsEnvironmentTest, GetsAVariable) {
    setenv("ZX_TEST_A", "value", 1);
    std::string value = "old";
    EXPECT_FALSE(os::get_variable("ZX_TEST_NONE", value));
    EXPECT_EQ("old", value);
    EXPECT_TRUE(os::get_variable("ZX_TEST_A", value));
    EXPECT_EQ("value", value);
}

TEST(OsEnvironmentTest, ExpandsIntoWhatFitsAndTellsWhatIsNeeded) {
    setenv("ZX_TEST_A", "value", 1);
    char target[8] = "old";
    EXPECT_EQ(8U, os::expand_variables("<%ZX_TEST_A%>", target, 7));
    EXPECT_STREQ("old", target);
    EXPECT_EQ(8U, os::expand_variables("<%ZX_TEST_A%>", target, 8));
    EXPECT_STREQ("<value>", target);
    EXPECT_EQ(1U, os::expand_variables("", target, 8));
    EXPECT_STREQ("", target);
}

}  // namespace
