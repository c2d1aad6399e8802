#include "machine/clock.h"

#include <gtest/gtest.h>

namespace zendrix::sim {
namespace {

TEST(ScaledClock, WaitsLessTheFasterItRuns) {
    ScaledClock clock(1000.0);
    const double now = clock.now();
    const double wait = clock.wait_until(now + 100000.0).count();
    EXPECT_LE(wait, 100.0);
    EXPECT_GT(wait, 0.0);
    EXPECT_EQ(clock.wait_until(now - 1.0), Clock::Duration::zero());
}

TEST(LeapingClock, StandsAtOnceWhereItIsWaitedFor) {
    LeapingClock clock;
    const double now = clock.now();
    EXPECT_EQ(clock.wait_until(now + 3600.0), Clock::Duration::zero());
    EXPECT_GE(clock.now(), now + 3600.0);
    EXPECT_LT(clock.now(), now + 7200.0);
}

TEST(ManualClock, StandsStillUntilItIsMoved) {
    ManualClock clock;
    EXPECT_GT(clock.wait_until(1.0).count(), 1.0);
    EXPECT_EQ(clock.now(), 0.0);
    clock.advance(1.5);
    EXPECT_EQ(clock.now(), 1.5);
    EXPECT_EQ(clock.wait_until(1.0), Clock::Duration::zero());
}

}  // namespace
}  // namespace zendrix::sim
