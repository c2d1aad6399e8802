#include "os/localtime.h"

#include <gtest/gtest.h>

namespace {

// The same moment read back, wherever the program runs.
TEST(LocalTimeTest, TellsTheMomentInLocalTime) {
    constexpr std::time_t half_a_year = 15'768'000;
    for (std::time_t moment = 1'700'000'000; moment < 1'800'000'000; moment += half_a_year) {
        std::tm time = os::local_time(moment);
        EXPECT_GE(time.tm_year, 123);
        EXPECT_EQ(moment, std::mktime(&time));
    }
}

}  // namespace
