#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "number_text.h"

namespace {

using namespace zxhost;

TEST(NumberFrom, TakesWholeDecimalNumbers) {
    EXPECT_EQ(number_from("12.5"), 12.5);
    EXPECT_EQ(number_from("-3"), -3.0);
    EXPECT_EQ(number_from("+3"), 3.0);
    EXPECT_EQ(number_from("1e-3"), 0.001);
    EXPECT_TRUE(std::isnan(*number_from("nan")));
    EXPECT_TRUE(std::isinf(*number_from("-inf")));
}

TEST(NumberFrom, RefusesAllElse) {
    for (const char* text : {"", " 1", "1 ", "1,5", "1.5mm", "+-1", "+", "x", "0x10", "1e999"})
        EXPECT_FALSE(number_from(text)) << text;
}

TEST(FixedText, RoundsAndNeverShowsMinusZero) {
    EXPECT_EQ(fixed_text(1.23456, 3), "1.235");
    EXPECT_EQ(fixed_text(-0.0001, 3), "0.000");
    EXPECT_EQ(fixed_text(-0.0, 0), "0");
    EXPECT_EQ(fixed_text(-12.0, 1), "-12.0");
    EXPECT_EQ(fixed_text(std::numeric_limits<double>::quiet_NaN(), 3), "unknown");
}

TEST(ShortestText, ReadsBackAsTheSameNumber) {
    EXPECT_EQ(shortest_text(0.1), "0.1");
    const double third = 1.0 / 3.0;
    EXPECT_EQ(number_from(shortest_text(third)), third);
}

TEST(UnitOf, KnowsAnglesTimesAndSpeeds) {
    EXPECT_EQ(unit_of("x"), "mm");
    EXPECT_EQ(unit_of("c"), "deg");
    EXPECT_EQ(unit_of("hb"), "deg");
    EXPECT_EQ(unit_of("time"), "s");
    EXPECT_EQ(unit_of("scanspeed"), "mm/s");
    EXPECT_EQ(unit_of("init"), "");
}

TEST(Printable, DisarmsControlBytesAndKeepsUtf8) {
    EXPECT_EQ(printable("a\x1b[2Jb"), "a\\x1b[2Jb");
    EXPECT_EQ(printable(std::string("n\0l", 3)), "n\\x00l");
    EXPECT_EQ(printable("µm\t\"q\""), "µm\t\"q\"");
    EXPECT_EQ(printable("\x7f\r\n"), "\\x7f\\x0d\\x0a");
}

}  // namespace
