#include "environment_variable.h"
#include "menvironment.h"
#include "reports.h"

namespace {

using EnvironmentTestWin32 = ReportsTest;

TEST_F(EnvironmentTestWin32, TheCaseOfANameIsNoMatter) {
    const EnvironmentVariable variable("ZX_TEST_A", "alpha");
    std::string text = "%zx_test_a%";
    EXPECT_TRUE(MReplaceEnvironmentVars(text));
    EXPECT_EQ("alpha", text);
}

}  // namespace
