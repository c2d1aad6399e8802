#include "os/clock.h"

#include <gtest/gtest.h>

namespace {

class StoppedClock final : public os::MonotonicClock {
public:
    std::int64_t counter() override { return 7; }
    std::int64_t frequency() override { return 10; }
};

TEST(ClockTest, TheSystemsClockNeverGoesBack) {
    EXPECT_GT(os::monotonic_clock().frequency(), 0);
    std::int64_t last = os::monotonic_clock().counter();
    for (int i = 0; i < 1000; ++i) {
        const std::int64_t now = os::monotonic_clock().counter();
        EXPECT_GE(now, last);
        last = now;
    }
}

TEST(ClockTest, TheCoarseCounterIsNeverAheadAndNeverGoesBack) {
    os::MonotonicClock& clock = os::monotonic_clock();
    EXPECT_GE(clock.coarse_lag(), 0);
    std::int64_t last = clock.coarse_counter();
    for (int i = 0; i < 1000; ++i) {
        const std::int64_t coarse = clock.coarse_counter();
        EXPECT_GE(coarse, last);
        EXPECT_LE(coarse, clock.counter());
        last = coarse;
    }
}

TEST(ClockTest, WithoutACoarseCounterTheExactOneServes) {
    StoppedClock stopped;
    EXPECT_EQ(7, stopped.coarse_counter());
    EXPECT_EQ(0, stopped.coarse_lag());
}

TEST(ClockTest, CanBeReplacedAndPutBack) {
    os::MonotonicClock* const system = &os::monotonic_clock();
    StoppedClock stopped;
    EXPECT_EQ(system, os::replace_monotonic_clock(&stopped));
    EXPECT_EQ(7, os::monotonic_clock().counter());
    EXPECT_EQ(10, os::monotonic_clock().frequency());
    EXPECT_EQ(&stopped, os::replace_monotonic_clock(nullptr));
    EXPECT_EQ(system, &os::monotonic_clock());
}

}  // namespace
