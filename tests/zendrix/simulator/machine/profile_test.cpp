#include "machine/profile.h"

#include <gtest/gtest.h>

namespace zendrix::sim {
namespace {

TEST(Profile, LongTravelSpeedsUpCruisesAndSlowsDown) {
    const Profile profile(100.0, 10.0, 5.0);  // 2 s and 10 mm for either ramp, 8 s between them
    EXPECT_DOUBLE_EQ(profile.duration(), 12.0);
    EXPECT_DOUBLE_EQ(profile.position(1.0), 2.5);
    EXPECT_DOUBLE_EQ(profile.speed(1.0), 5.0);
    EXPECT_DOUBLE_EQ(profile.position(6.0), 50.0);
    EXPECT_DOUBLE_EQ(profile.speed(6.0), 10.0);
    EXPECT_DOUBLE_EQ(profile.position(11.0), 97.5);
    EXPECT_DOUBLE_EQ(profile.speed(11.0), 5.0);
}

TEST(Profile, ShortTravelNeverReachesItsSpeed) {
    const Profile profile(5.0, 10.0, 5.0);
    EXPECT_DOUBLE_EQ(profile.duration(), 2.0);
    EXPECT_DOUBLE_EQ(profile.position(1.0), 2.5);
    EXPECT_DOUBLE_EQ(profile.speed(1.0), 5.0);
}

TEST(Profile, HoldsItsEnds) {
    const Profile profile(100.0, 10.0, 5.0);
    EXPECT_EQ(profile.position(-1.0), 0.0);
    EXPECT_EQ(profile.position(13.0), 100.0);
    EXPECT_EQ(profile.speed(13.0), 0.0);
    EXPECT_EQ(Profile(0.0, 10.0, 5.0).duration(), 0.0);
}

TEST(Profile, SlowsDownToAStand) {
    const Profile profile = Profile::slow_down(10.0, 5.0);
    EXPECT_DOUBLE_EQ(profile.duration(), 2.0);
    EXPECT_DOUBLE_EQ(profile.length(), 10.0);
    EXPECT_DOUBLE_EQ(profile.speed(0.0), 10.0);
    EXPECT_DOUBLE_EQ(profile.position(1.0), 7.5);
    EXPECT_DOUBLE_EQ(profile.speed(1.0), 5.0);
}

TEST(Profile, TimeIsTheInverseOfPosition) {
    for (const Profile& profile :
         {Profile(100.0, 10.0, 5.0), Profile(5.0, 10.0, 5.0), Profile(0.001, 80.0, 400.0)}) {
        for (int i = 0; i <= 1000; ++i) {
            const double position = profile.length() * i / 1000.0;
            ASSERT_NEAR(profile.position(profile.time(position)), position, 1e-9) << i;
        }
    }
}

TEST(Profile, NeverGoesBackAndNeverTooFast) {
    const Profile profile(37.0, 8.0, 3.0);
    const double step = 0.001;
    for (double time = 0.0; time < profile.duration(); time += step) {
        const double way = profile.position(time + step) - profile.position(time);
        ASSERT_GE(way, 0.0);
        ASSERT_LE(way, 8.0 * step + 1e-9);
    }
}

}  // namespace
}  // namespace zendrix::sim
