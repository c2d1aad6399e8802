#include "os/environment.h"

#include <gtest/gtest.h>

#include "environment_variable.h"

namespace {

TEST(OsEnvironmentTest, GetsAVariable) {
    set_variable("ZX_TEST_A", "value");
    std::string value = "old";
    EXPECT_FALSE(os::get_variable("ZX_TEST_NONE", value));
    EXPECT_EQ("old", value);
    EXPECT_TRUE(os::get_variable("ZX_TEST_A", value));
    EXPECT_EQ("value", value);
    set_variable("ZX_TEST_A", "");
    EXPECT_TRUE(os::get_variable("ZX_TEST_A", value));
    EXPECT_EQ("", value);
    for (const std::size_t size : {255U, 256U, 257U, 5000U}) {
        set_variable("ZX_TEST_A", std::string(size, 'x'));
        EXPECT_TRUE(os::get_variable("ZX_TEST_A", value));
        EXPECT_EQ(std::string(size, 'x'), value);
    }
    remove_variable("ZX_TEST_A");
    EXPECT_FALSE(os::get_variable("ZX_TEST_A", value));
}

TEST(OsEnvironmentTest, ExpandsIntoWhatFitsAndTellsWhatIsNeeded) {
    const EnvironmentVariable variable("ZX_TEST_A", "value");
    char target[9] = {};
    target[7] = 'x';
    EXPECT_EQ(8U, os::expand_variables("<%ZX_TEST_A%>", target, 7));
    EXPECT_EQ('x', target[7]) << "nothing is written behind the end";
    EXPECT_EQ(8U, os::expand_variables("<%ZX_TEST_A%>", target, 8));
    EXPECT_STREQ("<value>", target);
    EXPECT_EQ(1U, os::expand_variables("", target, 8));
    EXPECT_STREQ("", target);
}

TEST(OsEnvironmentTest, UnknownNamesStay) {
    remove_variable("ZX_TEST_NONE");
    const EnvironmentVariable variable("ZX_TEST_A", "value");
    char target[100];
    for (const char* const text : {"%ZX_TEST_NONE%", "50% of", "%", "no sign"}) {
        EXPECT_NE(0U, os::expand_variables(text, target, sizeof target));
        EXPECT_STREQ(text, target);
    }
    os::expand_variables("%ZX_TEST_NONE% %ZX_TEST_A%", target, sizeof target);
    EXPECT_STREQ("%ZX_TEST_NONE% value", target);
}

TEST(OsEnvironmentTest, AVariableOfATestIsPutBack) {
    std::string value;
    set_variable("ZX_TEST_A", "before");
    {
        const EnvironmentVariable other("ZX_TEST_A", nullptr);
        EXPECT_FALSE(os::get_variable("ZX_TEST_A", value));
        const EnvironmentVariable again("ZX_TEST_A", "now");
        EXPECT_TRUE(os::get_variable("ZX_TEST_A", value));
        EXPECT_EQ("now", value);
    }
    EXPECT_TRUE(os::get_variable("ZX_TEST_A", value));
    EXPECT_EQ("before", value);
    remove_variable("ZX_TEST_A");
}

}  // namespace
