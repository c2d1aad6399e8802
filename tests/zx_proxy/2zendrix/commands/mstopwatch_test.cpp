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

TEST(MStopwatchTest, HasElapsedAsSoonAsElapsedSaysSo) {
    FakeClock clock;
    const MStopwatch watch;
    EXPECT_TRUE(watch.has_elapsed(0.0));
    clock.m_counter = 9;
    EXPECT_FALSE(watch.has_elapsed(0.01));
    clock.m_counter = 10;
    EXPECT_TRUE(watch.has_elapsed(0.01));
    clock.m_counter = 11;
    EXPECT_TRUE(watch.has_elapsed(0.01));
}

TEST(MStopwatchTest, HasElapsedIsExactWhereverTheCoarseCounterStands) {
    FakeClock clock;
    clock.m_max_lag = 4;
    const MStopwatch watch;
    for (clock.m_lag = 0; clock.m_lag <= 4; ++clock.m_lag) {
        for (clock.m_counter = 0; clock.m_counter < 20; ++clock.m_counter)
            EXPECT_EQ(watch.has_elapsed(0.01), clock.m_counter >= 10)
                << clock.m_lag << " " << clock.m_counter;
    }
}

TEST(MStopwatchTest, TheSystemsClockRunsForward) {
    const MStopwatch watch;
    const double first = watch.elapsed();
    EXPECT_GE(first, 0.0);
    EXPECT_GE(watch.elapsed(), first);
}

}  // namespace
