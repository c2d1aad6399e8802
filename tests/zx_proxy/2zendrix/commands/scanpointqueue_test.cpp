#include "scanpointqueue.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>

namespace {

using Point = std::vector<double>;

TEST(ScanPointQueueTest, AnEmptyQueueGivesNothing) {
    ScanPointQueue queue;
    Point point{1};
    EXPECT_FALSE(queue.pop(point));
    EXPECT_EQ(point, Point{1});
}

TEST(ScanPointQueueTest, LongQueuesKeepTheirOrder) {
    ScanPointQueue queue;
    constexpr int count = 50000;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < count; ++i) queue.push({static_cast<double>(i)});
        Point point;
        for (int i = 0; i < count; ++i) {
            ASSERT_TRUE(queue.pop(point));
            ASSERT_EQ(point, Point{static_cast<double>(i)});
        }
        EXPECT_FALSE(queue.pop(point));
    }
}

// Against a plain deque, at lengths around those of a chunk, with points and host's vectors of many sizes.
TEST(ScanPointQueueTest, BehavesAsAPlainQueue) {
    std::mt19937 random(1);
    ScanPointQueue queue;
    std::deque<Point> plain;
    const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    for (int round = 0; round < 2000; ++round) {
        for (unsigned i = below(200); i > 0; --i) {
            const Point point(below(80), static_cast<double>(below(1000)));
            queue.push(point);
            plain.push_back(point);
        }
        for (unsigned i = below(205); i > 0; --i) {
            Point point(below(100), -1.0);
            const Point before = point;
            ASSERT_EQ(queue.pop(point), !plain.empty());
            ASSERT_EQ(point, plain.empty() ? before : plain.front());
            if (!plain.empty()) plain.pop_front();
        }
    }
}

TEST(ScanPointQueueTest, ExactlyOneChunkAfterTheOther) {
    ScanPointQueue queue;
    Point point;
    for (int chunk = 0; chunk < 3; ++chunk) {
        for (int i = 0; i < 128; ++i) queue.push({static_cast<double>(i)});
        for (int i = 0; i < 128; ++i) {
            ASSERT_TRUE(queue.pop(point));
            ASSERT_EQ(point, Point{static_cast<double>(i)});
        }
        ASSERT_FALSE(queue.pop(point));
    }
}

}  // namespace
