#include "os/number.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <string>

namespace {

struct Case {
    const char* text;
    double value;
    int used;
};

TEST(NumberTest, ReadsAsTheCLocaleDoes) {
    const Case cases[] = {
        {"1.5", 1.5, 3},
        {" +2e2x", 200.0, 5},
        {"1,5", 1.0, 1},
        {"", 0.0, 0},
        {"x", 0.0, 0},
        {"0x10", 16.0, 4},
        {"1e999", HUGE_VAL, 5},
        {"-1e999", -HUGE_VAL, 6},
        {"-inf", -HUGE_VAL, 4},
        {".5.", 0.5, 2},
        {" \t\n1", 1.0, 4},
        {"--5", 0.0, 0},
        {"+-5", 0.0, 0},
        {"-", 0.0, 0},
        {"0x", 0.0, 1},
        {"0xg", 0.0, 1},
        {"-0x.8p2z", -2.0, 7},
        {"0x1p+-2", 1.0, 3},
        {"infinite", HUGE_VAL, 3},
        {"-Infinity", -HUGE_VAL, 9},
        {"1e", 1.0, 1},
        {"1e+", 1.0, 1},
        {"1e-999", 0.0, 6},
        {"0x1p9999", HUGE_VAL, 8},
        {"0x1p-9999", 0.0, 9},
        {"1e99999999999999999999", HUGE_VAL, 22},
        {"1e-99999999999999999999", 0.0, 23},
        {"1.7976931348623157e308", 1.7976931348623157e308, 22},
        {"4.9406564584124654e-324", 4.9406564584124654e-324, 23},
    };
    for (const Case& c : cases) {
        char* end = nullptr;
        EXPECT_EQ(c.value, os::string_to_double(c.text, &end)) << c.text;
        EXPECT_EQ(c.used, end - c.text) << c.text;
    }
}

TEST(NumberTest, DigitsWithoutAnExponentMayGoTooFar) {
    const std::string zeros(400, '0');
    for (const std::string& text : {"1" + zeros, "0001" + zeros + ".5", "0x1" + zeros}) {
        EXPECT_EQ(HUGE_VAL, os::string_to_double(text.c_str(), nullptr)) << text;
        EXPECT_EQ(-HUGE_VAL, os::string_to_double(("-" + text).c_str(), nullptr)) << text;
    }
    EXPECT_EQ(0.0, os::string_to_double(("0." + zeros + "1").c_str(), nullptr));
    EXPECT_EQ(0.0, os::string_to_double(("0." + zeros + "1e+2").c_str(), nullptr));
    EXPECT_EQ(1e-1, os::string_to_double(("0." + zeros + "1e+400").c_str(), nullptr));
    EXPECT_EQ(1.0, os::string_to_double(("1" + zeros + "e-400").c_str(), nullptr));
}

TEST(NumberTest, NotANumberAndTheSignOfZero) {
    char* end = nullptr;
    const char* const text = "-nan!";
    EXPECT_TRUE(std::isnan(os::string_to_double(text, &end)));
    EXPECT_EQ(4, end - text);
    EXPECT_TRUE(std::signbit(os::string_to_double("-0", &end)));
}

TEST(NumberTest, TheProcessesLocaleIsNoMatter) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* const name : {"de_DE.UTF-8", "German_Germany.1252"}) std::setlocale(LC_NUMERIC, name);
    EXPECT_EQ(1.5, os::string_to_double("1.5", nullptr));
    EXPECT_EQ(1.0, os::string_to_double("1,5", nullptr));
    std::setlocale(LC_NUMERIC, before.c_str());
}

}  // namespace
