#include "os/number.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct Case {
    const char* text;
    double value;
    int used;
};

TEST(NumberTest, ReadsAsTheCLocaleDoes) {
    const Case cases[] = {
        {"1.5", 1.5, 3},        {" +2e2x", 200.0, 5}, {"1,5", 1.0, 1},        {"", 0.0, 0},
        {"x", 0.0, 0},          {"0x10", 16.0, 4},    {"1e999", HUGE_VAL, 5}, {"-1e999", -HUGE_VAL, 6},
        {"-inf", -HUGE_VAL, 4}, {".5.", 0.5, 2},
    };
    for (const Case& c : cases) {
        char* end = nullptr;
        EXPECT_EQ(c.value, os::string_to_double(c.text, &end)) << c.text;
        EXPECT_EQ(c.used, end - c.text) << c.text;
    }
}

}  // namespace
