#include "numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <random>

namespace {

std::uint64_t bits(double value) { return std::bit_cast<std::uint64_t>(value); }

// Every text gives what std::from_chars gives, with the same number of bytes taken.
void expect_same_as_from_chars(const std::string& text) {
    double expected = 0.5;
    const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), expected);
    double value = 0.5;
    const char* const end = wire::scan_number(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc()) {
        EXPECT_EQ(end, nullptr) << text;
        return;
    }
    EXPECT_EQ(end, result.ptr) << text;
    EXPECT_EQ(bits(value), bits(expected)) << text;
}

TEST(Numbers, OddTextsReadAsTheStandardLibraryReadsThem) {
    for (const char* text : {"",
                             "-",
                             ".",
                             "-.",
                             "0",
                             "-0",
                             "-0.0",
                             ".5",
                             "5.",
                             "1.25x",
                             "1e3",
                             "1e",
                             "1E-3",
                             "nan",
                             "inf",
                             "-inf",
                             "infinity",
                             "nano",
                             "+1",
                             " 1",
                             "0x10",
                             "9007199254740991",
                             "9007199254740992",
                             "9007199254740993",
                             "0.000000",
                             "123456789012345678",
                             "1234567890123456789",
                             "0.1234567890123456789",
                             "1.7976931348623157e308",
                             "1e999",
                             "1e-999",
                             "4.9e-324",
                             "00000000000000000000001.5",
                             "1..2",
                             "1.2.3",
                             "0.30000000000000004"}) {
        expect_same_as_from_chars(text);
    }
}

TEST(Numbers, RandomTextsReadAsTheStandardLibraryReadsThem) {
    std::mt19937_64 random(11);
    for (int i = 0; i < 200000; ++i) {
        char text[64];
        const double value = std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                                        -static_cast<int>(random() % 70));
        const int decimals = static_cast<int>(random() % 9);
        const int length = std::snprintf(text, sizeof text, "%.*f", decimals, value);
        expect_same_as_from_chars(std::string(text, static_cast<std::size_t>(length)));
    }
}

TEST(Numbers, ShortestTextsGiveTheSameDoubleAgain) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 200000; ++i) {
        const double value = std::bit_cast<double>(random());
        std::string text;
        wire::append_shortest(text, value);
        double again = 0.0;
        ASSERT_TRUE(wire::parse_number(text, again)) << text;
        if (std::isnan(value)) {
            EXPECT_EQ(text, "nan");
        } else {
            EXPECT_EQ(bits(again), bits(value)) << text;
        }
    }
}

TEST(Numbers, AWholeTextIsOneNumber) {
    double value = 7.0;
    EXPECT_FALSE(wire::parse_number("", value));
    EXPECT_FALSE(wire::parse_number("1 ", value));
    EXPECT_FALSE(wire::parse_number("1,5", value));
    EXPECT_EQ(value, 1.0);  // a reader looks at the value only on true
    EXPECT_TRUE(wire::parse_number("-12.5", value));
    EXPECT_EQ(value, -12.5);
}

TEST(Numbers, IntegersStayInTheirRange) {
    std::int64_t value = 7;
    EXPECT_TRUE(wire::parse_integer("2147483647", 0, 2147483647, value));
    EXPECT_EQ(value, 2147483647);
    for (const char* text : {"2147483648", "-1", "", "1.0", "1x", "99999999999999999999"}) {
        EXPECT_FALSE(wire::parse_integer(text, 0, 2147483647, value)) << text;
    }
    EXPECT_EQ(value, 2147483647);
}

}  // namespace
