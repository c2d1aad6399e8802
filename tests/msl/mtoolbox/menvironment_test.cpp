#include "menvironment.h"

#include <cerrno>
#include <system_error>

#include "environment_variable.h"
#include "os/error.h"
#include "reports.h"

// The sanitizers' allocators shall return null for a size too large, as others do, and not end the program.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options();
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_options();
const char* __asan_default_options() { return "allocator_may_return_null=1"; }
const char* __tsan_default_options() { return "allocator_may_return_null=1"; }

namespace {

class EnvironmentTest : public ReportsTest {
protected:
    void SetUp() override {
        ReportsTest::SetUp();
        set_variable("ZX_TEST_A", "alpha");
        set_variable("ZX_TEST_EMPTY", "");
        set_variable("ZX_TEST_LONG", std::string(5000, 'x'));
        remove_variable("ZX_TEST_NONE");
    }
};

std::string replaced(std::string text) {
    EXPECT_TRUE(MReplaceEnvironmentVars(text));
    return text;
}

TEST_F(EnvironmentTest, ReplacesKnownNames) {
    EXPECT_EQ("alpha", replaced("%ZX_TEST_A%"));
    EXPECT_EQ("a alpha b alpha.", replaced("a %ZX_TEST_A% b %ZX_TEST_A%."));
    EXPECT_EQ("ab", replaced("a%ZX_TEST_EMPTY%b"));
    EXPECT_EQ("", replaced(""));
    EXPECT_EQ("plain", replaced("plain"));
}

TEST_F(EnvironmentTest, UnknownNamesAndLonelySignsStay) {
    EXPECT_EQ("%ZX_TEST_NONE%", replaced("%ZX_TEST_NONE%"));
    EXPECT_EQ("100%", replaced("100%"));
    EXPECT_EQ("%%", replaced("%%"));
}

TEST_F(EnvironmentTest, AValueIsNotReplacedAgain) {
    set_variable("ZX_TEST_B", "%ZX_TEST_A%");
    EXPECT_EQ("%ZX_TEST_A%", replaced("%ZX_TEST_B%"));
}

TEST_F(EnvironmentTest, LongTextsAreReplacedToo) {
    const std::string x(5000, 'x');
    EXPECT_EQ(x + "," + x, replaced("%ZX_TEST_LONG%,%ZX_TEST_LONG%"));
    for (const std::size_t length : {4092U, 4093U, 4094U, 4095U}) {
        const std::string text(length, 'y');
        EXPECT_EQ(text, replaced(text));
    }
}

std::size_t never(const char*, char*, std::size_t) {
    os::set_last_error(ENOENT);
    return 0;
}

std::size_t too_large_for_memory(const char*, char*, std::size_t) { return static_cast<std::size_t>(-1) / 2; }

int calls = 0;

std::size_t only_once(const char*, char*, std::size_t) {
    os::set_last_error(EINVAL);
    return ++calls == 1 ? 5000 : 0;
}

std::size_t ever_larger(const char*, char*, std::size_t size) {
    os::set_last_error(EINVAL);
    return size + 1;
}

TEST_F(EnvironmentTest, AFailureLeavesTheTextAndReports) {
    std::string s = "text";
    EXPECT_FALSE(MReplaceEnvironmentVars(s, never));
    EXPECT_EQ(
        Texts{"MReplaceEnvironmentVars(): ExpandEnvironmentStrings() failed: " + os::error_text(ENOENT)},
        trace_reports());
    calls = 0;
    EXPECT_FALSE(MReplaceEnvironmentVars(s, only_once));
    EXPECT_FALSE(MReplaceEnvironmentVars(s, ever_larger));
    const std::string again =
        "MReplaceEnvironmentVars(): ExpandEnvironmentStrings() failed again: " + os::error_text(EINVAL);
    EXPECT_EQ((Texts{again, again}), trace_reports());
    EXPECT_EQ("text", s);
    EXPECT_EQ("msl/mtoolbox/src/menvironment_win32", recording::error_trace_places().front().source);
}

TEST_F(EnvironmentTest, ExhaustionLeavesTheTextAndReports) {
    std::string s = "text";
    EXPECT_FALSE(MReplaceEnvironmentVars(s, too_large_for_memory));
    EXPECT_EQ(Texts{"MReplaceEnvironmentVars(): malloc() failed: " + std::generic_category().message(ENOMEM)},
              trace_reports());
    EXPECT_EQ("text", s);
}

}  // namespace
