#include "mstopwatch.h"

#include <gtest/gtest.h>

#include "fake_clock.h"

namespace {

TEST(MStopwatchTest, CountsFromItsConstruction) {
    FakeClock clock;
    clock.m_counter = 5000;
    const MStopwatch watch;
    EXPECT_EQ(watch.elapsed(), 0.0);
    clock.m_counter += 250;
    EXPECT_EQ(watch.elapsed(), 0.25);
    EXPECT_EQ(watch.elapsed(), 0.25);
}

TEST(MStopwatchTest, RestartGivesTheTimeAndStartsAnew) {
    FakeClock clock;
    MStopwatch watch;
    clock.m_counter = 1500;
    EXPECT_EQ(watch.restart(), 1.5);
    EXPECT_EQ(watch.elapsed(), 0.0);
    clock.m_counter = 1510;
    EXPECT_EQ(watch.elapsed(), 0.01);
}

TEST(MStopwatchTest, TheFrequencyIsTheClocks) {
    FakeClock clock(8);
    const MStopwatch watch;
    clock.m_counter = 2;
    EXPECT_EQ(watch.elapsed(), 0.25);
}

TEST(MStopwatchTest, TheSystemsClockRunsForward) {
    const MStopwatch watch;
    const double first = watch.elapsed();
    EXPECT_GE(first, 0.0);
    EXPECT_GE(watch.elapsed(), first);
}

}  // namespace
