#include "cachedaxes.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

TEST(CachedAxes, KeepsNothingAtFirst) {
    const CachedAxes axes;
    double value = 7.0;
    EXPECT_TRUE(axes.empty());
    EXPECT_FALSE(axes.read("x", value));
    EXPECT_FALSE(axes.read("", value));
    EXPECT_EQ(value, 7.0);
}

TEST(CachedAxes, NamesAreInOrderAndOnlyOnce) {
    CachedAxes axes;
    for (const char* name : {"y", "x", "hb", "y", "x1"}) axes.add(name);
    ASSERT_EQ(axes.size(), 4U);
    EXPECT_EQ(axes.name(0), "hb");
    EXPECT_EQ(axes.name(1), "x");
    EXPECT_EQ(axes.name(2), "x1");
    EXPECT_EQ(axes.name(3), "y");
}

TEST(CachedAxes, AddingAgainGoesBackToZeroAndLeavesTheOthers) {
    CachedAxes axes;
    axes.add("x");
    axes.add("z");
    axes.store(0, 1.0);
    axes.store(1, 2.0);
    axes.add("y");
    axes.add("x");
    double value = -1.0;
    EXPECT_TRUE(axes.read("x", value));
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(axes.read("z", value));
    EXPECT_EQ(value, 2.0);
}

TEST(CachedAxes, AgreesWithAMap) {
    std::mt19937 random(1);
    CachedAxes axes;
    std::map<std::string, double> map;
    const auto name = [&random] {
        std::string text;
        for (unsigned n = random() % 4; n > 0; --n) text += static_cast<char>('a' + random() % 3);
        return text;
    };
    for (int i = 0; i < 60; ++i) {
        const std::string added = name();
        axes.add(added);
        map[added] = 0.0;
        std::size_t place = 0;
        for (auto& entry : map) {
            ASSERT_EQ(axes.name(place), entry.first);
            entry.second = static_cast<double>(random());
            axes.store(place++, entry.second);
        }
        for (int j = 0; j < 100; ++j) {
            const std::string asked = name();
            double value = -1.0;
            ASSERT_EQ(axes.read(asked.c_str(), value), map.contains(asked)) << asked;
            if (map.contains(asked)) {
                ASSERT_EQ(value, map[asked]);
            }
        }
    }
}

}  // namespace
