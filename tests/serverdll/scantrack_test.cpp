#include "scantrack.h"

#include <gtest/gtest.h>

namespace {

using serverdll::ScanTrack;
using Values = std::vector<double>;

std::string line_of(std::int64_t number, const std::string& values) {
    return "0042\tpoint " + std::to_string(number) + " " + values + "\r\n";
}

TEST(ScanTrack, BothRoadsCountOn) {
    ScanTrack track(42);
    for (std::int64_t number = 1; number <= 20000; ++number) {
        const std::string line = line_of(number, "1.5 -2");
        Values values = {7.0};
        std::size_t count = 0;
        if (number % 7 == 0) {
            std::string_view body;
            std::string_view error;
            ASSERT_TRUE(track.is_mine(std::string_view(line).substr(0, line.size() - 2), body));
            ASSERT_EQ(track.take(body, values, error), 2U) << number;
        } else {
            ASSERT_EQ(track.take_line(line + "0042\tready\r\n", values, count), line.size()) << number;
            ASSERT_EQ(count, 2U);
        }
        ASSERT_EQ(values, (Values{7.0, 1.5, -2.0}));
    }
}

TEST(ScanTrack, TheQuickRoadTakesNothingElse) {
    const std::string strange[] = {"",
                                   "0042\tpoint 1",
                                   "0042\tpoint 1 1.5",
                                   "0042\tpoint 1 1.5\r",
                                   "0042\tpoint 1 1.5\n",
                                   "0042\tpoint 1 \r\n",
                                   "0042\tpoint 1\r\n",
                                   "0042\tpoint 1 1.5 \r\n",
                                   "0042\tpoint 1 1.5  2\r\n",
                                   "0042\tpoint 1 1.5 x\r\n",
                                   "0042\tpoint 1 1.5\rx",
                                   "0042\tpoint 2 1.5\r\n",
                                   "0042\tpoint 11 1.5\r\n",
                                   "0043\tpoint 1 1.5\r\n",
                                   "0042\tready\r\n"};
    ScanTrack track(42);
    for (const std::string& line : strange) {
        Values values = {7.0};
        std::size_t count = 99;
        EXPECT_EQ(track.take_line(line, values, count), 0U) << line;
        EXPECT_EQ(values, Values{7.0}) << line;
        EXPECT_EQ(count, 99U);
    }
    Values values;
    std::size_t count = 0;
    EXPECT_EQ(track.take_line(line_of(1, "3"), values, count), line_of(1, "3").size());
}

TEST(ScanTrack, AFailedScanTakesNoFurtherPoint) {
    ScanTrack track(42);
    Values values;
    std::size_t count = 0;
    std::string_view error;
    EXPECT_EQ(track.take("2 1.5", values, error), 0U);
    EXPECT_EQ(error, "scan: points lost");
    EXPECT_EQ(track.take("1 1.5", values, error), 0U);
    EXPECT_EQ(error, "");
    EXPECT_EQ(track.take_line(line_of(1, "1.5"), values, count), 0U);
    EXPECT_TRUE(values.empty());
}

}  // namespace
