#include <cerrno>
#include <cwchar>
#include <system_error>

#include "format_through_va.h"
#include "reports.h"

namespace {

using StlUtilitiesTestPosix = ReportsTest;

// Other systems' formats leave out what they can't tell.
TEST_F(StlUtilitiesTestPosix, AFormatThatCannotBeCarriedOutIsReportedToTheLog) {
    // Not to be had in the "C" locale.
    constexpr std::wint_t sigma = 0x3A3;
    const std::string reason = std::generic_category().message(EILSEQ);
    EXPECT_EQ("", stl_string_format("%lc", sigma));
    EXPECT_EQ(Texts{"stl_string_format(): stl_string_format() failed: " + reason}, log_reports());
    EXPECT_EQ("", format_through_va("%lc", sigma));
    EXPECT_EQ(Texts{"stl_string_format_va(): stl_string_format_va() failed: " + reason}, log_reports());
    EXPECT_EQ("msl/mutil/src/stl_utilities", recording::error_log_places().front().source);
}

}  // namespace
