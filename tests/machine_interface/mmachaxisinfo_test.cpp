#include "mmachaxisinfo.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace {

MMachAxisInfo axis(std::uint32_t flags) {
    MMachAxisInfo info;
    info.name = "x";
    info.flags = flags;
    info.number1 = 1.0;
    info.number2 = 2.0;
    info.number3 = 3.0;
    info.number4 = 4.0;
    info.number5 = 5.0;
    info.step = 6.0;
    return info;
}

bool equal_after(std::uint32_t flags, const std::function<void(MMachAxisInfo&)>& change, double step = 6.0) {
    MMachAxisInfo a = axis(flags);
    a.step = step;
    MMachAxisInfo b = a;
    change(b);
    EXPECT_EQ(a == b, b == a);
    return a == b;
}

constexpr double nan_value = std::numeric_limits<double>::quiet_NaN();

TEST(MMachAxisInfo, NameFlagsAndThreeNumbersCountForEveryAxis) {
    for (const std::uint32_t flags : {0U, 1U, 2U, 4U, 8U, 10U, 32U}) {
        EXPECT_TRUE(axis(flags) == axis(flags));
        EXPECT_FALSE(equal_after(flags, [](auto& b) { b.name = "y"; }));
        EXPECT_FALSE(equal_after(flags, [](auto& b) { b.flags ^= 64U; }));
        EXPECT_FALSE(equal_after(flags, [](auto& b) { b.number1 = 9.0; }));
        EXPECT_FALSE(equal_after(flags, [](auto& b) { b.number2 = 9.0; }));
        EXPECT_FALSE(equal_after(flags, [](auto& b) { b.number3 = 9.0; }));
        EXPECT_FALSE(equal_after(flags, [](auto& b) { b.number1 = nan_value; }));
    }
    MMachAxisInfo unknown = axis(0);
    unknown.number2 = nan_value;
    EXPECT_FALSE(unknown == unknown);
}

TEST(MMachAxisInfo, InactiveAxesOfOneNameAreEqual) {
    MMachAxisInfo other;
    other.name = "x";
    other.flags = MMACH_AXIS_INACTIVE | MMACH_AXIS_ROTARY_NAME;
    EXPECT_TRUE(axis(MMACH_AXIS_INACTIVE | MMACH_AXIS_BOUNDED) == other);
    other.name = "y";
    EXPECT_FALSE(axis(MMACH_AXIS_INACTIVE) == other);
    EXPECT_FALSE(axis(MMACH_AXIS_INACTIVE) == axis(0));
}

TEST(MMachAxisInfo, LimitsCountForBoundedAxes) {
    for (const auto& change : {std::function<void(MMachAxisInfo&)>([](auto& b) { b.number4 = 9.0; }),
                               std::function<void(MMachAxisInfo&)>([](auto& b) { b.number5 = 9.0; })}) {
        EXPECT_FALSE(equal_after(MMACH_AXIS_BOUNDED, change));
        EXPECT_TRUE(equal_after(MMACH_AXIS_UNBOUNDED, change));
        EXPECT_TRUE(equal_after(MMACH_AXIS_KIND_3, change));
        EXPECT_TRUE(equal_after(0, change));
    }
}

TEST(MMachAxisInfo, StepAndValuesCountForThreeKinds) {
    const auto other_step = [](auto& b) { b.step = 7.0; };
    const auto other_values = [](auto& b) { b.values.insert(1.0); };
    for (const std::uint32_t flags : {MMACH_AXIS_BOUNDED, MMACH_AXIS_UNBOUNDED, MMACH_AXIS_KIND_3}) {
        EXPECT_FALSE(equal_after(flags, other_step));
        EXPECT_TRUE(equal_after(flags, other_values));
        EXPECT_FALSE(equal_after(flags, other_values, 0.0));
    }
    EXPECT_TRUE(equal_after(MMACH_AXIS_KIND_0_2, other_step));
    EXPECT_TRUE(equal_after(MMACH_AXIS_KIND_0_2, other_values, 0.0));
}

}  // namespace
