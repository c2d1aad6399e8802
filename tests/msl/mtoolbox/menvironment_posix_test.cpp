#include "environment_variable.h"
#include "menvironment.h"
#include "reports.h"

namespace {

using EnvironmentTestPosix = ReportsTest;

std::string replaced(std::string text) {
    EXPECT_TRUE(MReplaceEnvironmentVars(text));
    return text;
}

TEST_F(EnvironmentTestPosix, SignsPairFromLeftToRight) {
    const EnvironmentVariable variable("ZX_TEST_A", "alpha");
    EXPECT_EQ("%ZX_TEST_NONE%ZX_TEST_A%", replaced("%ZX_TEST_NONE%ZX_TEST_A%"));
    EXPECT_EQ("%ZX_TEST_NONE%alpha", replaced("%ZX_TEST_NONE%%ZX_TEST_A%"));
    EXPECT_EQ("% %ZX_TEST_A%", replaced("% %ZX_TEST_A%"));
}

TEST_F(EnvironmentTestPosix, TheCaseOfANameCounts) {
    const EnvironmentVariable variable("ZX_TEST_A", "alpha");
    EXPECT_EQ("%zx_test_a%", replaced("%zx_test_a%"));
}

}  // namespace
