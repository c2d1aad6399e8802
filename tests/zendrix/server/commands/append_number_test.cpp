#include "append_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

namespace {

std::string written(double value) {
    std::string text;
    append_number(text, value);
    return text;
}

const char* without_zeros(const char* end) {
    while (end[-1] == '0') --end;
    return end[-1] == '.' ? end - 1 : end;
}

std::string printed(const char* format, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

// Six digits, each of them the whole part of ten times what is left.
std::string digit_by_digit(double value) {
    char buffer[32];
    double sum = value + (value < 0.0 ? -5e-7 : 5e-7);
    const char* sign = sum < 0.0 ? "-" : "";
    sum = std::fabs(sum);
    double whole = 0.0;
    double fraction = std::modf(sum, &whole);
    char* end = buffer + std::snprintf(buffer, sizeof buffer, " %s%u", sign, static_cast<unsigned>(whole));
    if (fraction == 0.0) return buffer;
    *end++ = '.';
    for (int i = 0; i < 6; ++i) {
        fraction *= 10.0;
        const int digit = static_cast<int>(fraction);
        *end++ = static_cast<char>('0' + digit);
        fraction -= digit;
    }
    return std::string(static_cast<const char*>(buffer), without_zeros(end));
}

// The rule: what every text must equal.
std::string plain(double value) {
    if (value == 0.0) return " 0";
    if (value >= -2147483648.0 && value <= 2147483647.0 && (value >= 5e-7 || value <= -5e-7)) {
        return digit_by_digit(value);
    }
    if (std::fabs(value) >= 1e11) return printed(" %.17g", value);
    const std::string text = printed(" %.6f", value);
    return std::string(text.data(), without_zeros(text.data() + text.size()));
}

TEST(AppendNumber, WritesAtMostSixDecimalsAndNoZerosBehind) {
    EXPECT_EQ(written(0.0), " 0");
    EXPECT_EQ(written(-0.0), " 0");
    EXPECT_EQ(written(0.1234567), " 0.123457");
    EXPECT_EQ(written(1.5), " 1.5");
    EXPECT_EQ(written(-0.25), " -0.25");
    EXPECT_EQ(written(2.0), " 2");
    EXPECT_EQ(written(100.0), " 100");
    EXPECT_EQ(written(0.9999996), " 1");
    EXPECT_EQ(written(-12.000001), " -12.000001");
    EXPECT_EQ(written(0.000001), " 0.000001");
}

TEST(AppendNumber, RoundsByAddingAndCutting) { EXPECT_EQ(written(0.1234565), " 0.123456"); }

TEST(AppendNumber, TinyNumbersKeepTheirSign) {
    EXPECT_EQ(written(1e-7), " 0");
    EXPECT_EQ(written(-1e-7), " -0");
    EXPECT_EQ(written(5e-324), " 0");
    EXPECT_EQ(written(-5e-324), " -0");
}

TEST(AppendNumber, LargeNumbersLeaveTheFastPath) {
    EXPECT_EQ(written(2147483647.0), " 2147483647");
    EXPECT_EQ(written(-2147483648.0), " -2147483648");
    EXPECT_EQ(written(2147483648.0), " 2147483648");
    EXPECT_EQ(written(2147483648.5), " 2147483648.5");
    EXPECT_EQ(written(99999999999.5), " 99999999999.5");
    EXPECT_EQ(written(1e11), " 100000000000");
    EXPECT_EQ(written(-1e11), " -100000000000");
    EXPECT_EQ(written(1e17), " 1e+17");
    EXPECT_EQ(written(std::numeric_limits<double>::max()), " 1.7976931348623157e+308");
}

TEST(AppendNumber, WhatIsNoNumberHasOneTextOnEverySystem) {
    EXPECT_EQ(written(std::numeric_limits<double>::quiet_NaN()), " nan");
    EXPECT_EQ(written(-std::numeric_limits<double>::quiet_NaN()), " nan");
    EXPECT_EQ(written(std::numeric_limits<double>::infinity()), " inf");
    EXPECT_EQ(written(-std::numeric_limits<double>::infinity()), " -inf");
}

TEST(AppendNumber, AppendsToWhatStandsThere) {
    std::string text = "data";
    append_number(text, 1.5);
    append_number(text, -3.0);
    EXPECT_EQ(text, "data 1.5 -3");
}

TEST(AppendNumber, BordersOfTheRangesAgreeWithTheRule) {
    for (const double border : {5e-7, 1e-6, 1.0, 4.0, 8.0, 2147483647.0, 2147483648.0, 1e11}) {
        double low = border;
        double high = border;
        for (int i = 0; i < 1000; ++i) {
            for (const double value : {low, -low, high, -high}) ASSERT_EQ(written(value), plain(value));
            low = std::nextafter(low, 0.0);
            high = std::nextafter(high, std::numeric_limits<double>::infinity());
        }
    }
}

// Values of every kind by turns: what machines measure, what people type, what lies next to a tie, and any
// bits.
class Values {
public:
    double next() {
        const double measured = std::uniform_real_distribution<double>(-500.0, 500.0)(m_random);
        switch (m_count++ % 6) {
            case 0:
                return measured;
            case 1:
                return rounded(measured, std::pow(10.0, static_cast<double>(m_random() % 7)));
            case 2:
                return beside_tie(measured);
            case 3:
                return beside_tie(measured / 100.0);
            case 4:
                return std::ldexp(measured, static_cast<int>(m_random() % 54) - 30);
            default:
                return any_bits();
        }
    }

private:
    static double rounded(double value, double scale) { return std::round(value * scale) / scale; }

    // Within a few steps of a value half a last digit off.
    double beside_tie(double value) {
        double tie = rounded(value, 1e6) + 5e-7;
        const double towards = (m_random() & 1) != 0 ? 1e300 : -1e300;
        for (std::uint64_t steps = m_random() % 4; steps > 0; --steps) tie = std::nextafter(tie, towards);
        return tie;
    }

    double any_bits() {
        const std::uint64_t bits = m_random();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        return std::isfinite(value) ? value : 0.0;
    }

    std::mt19937_64 m_random{20240229};
    unsigned m_count = 0;
};

// ZX_NUMBER_VALUES=1000000000 takes some minutes.
TEST(AppendNumber, MillionsOfValuesAgreeWithTheRule) {
    const char* const wanted = std::getenv("ZX_NUMBER_VALUES");
    const long long count = wanted ? std::atoll(wanted) : 3'000'000;
    Values values;
    std::string text;
    for (long long i = 0; i < count; ++i) {
        const double value = values.next();
        text.clear();
        append_number(text, value);
        ASSERT_EQ(text, plain(value)) << printed("%a", value);
    }
}

}  // namespace
