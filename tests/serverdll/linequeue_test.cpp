#include "linequeue.h"

#include <gtest/gtest.h>

#include <vector>

namespace serverdll {
namespace {

std::vector<std::string> all_of(const LineQueue& queue) {
    std::vector<std::string> lines;
    queue.for_each([&](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

TEST(LineQueue, GivesWhatItGotOldestFirst) {
    LineQueue queue;
    EXPECT_TRUE(queue.empty());
    const std::vector<std::string> lines{"one", "", std::string("t\0o", 3), std::string(1 << 20, 'x'),
                                         "last"};
    for (const std::string& line : lines) queue.push(line);
    EXPECT_EQ(queue.size(), lines.size());
    EXPECT_EQ(all_of(queue), lines);
    for (const std::string& line : lines) {
        EXPECT_EQ(queue.front(), line);
        queue.pop();
    }
    EXPECT_TRUE(queue.empty());
    queue.push("again");
    EXPECT_EQ(queue.front(), "again");
}

TEST(LineQueue, FilledAndEmptiedInTurnsItLosesNothing) {
    LineQueue queue;
    std::size_t pushed = 0;
    std::size_t popped = 0;
    const auto line = [](std::size_t number) {
        return std::to_string(number) + std::string(number * 37 % 5000, 'x');
    };
    while (pushed < 20000) {
        for (std::size_t i = 0; i < 7; ++i) queue.push(line(pushed++));
        for (std::size_t i = 0; i < 5; ++i, queue.pop()) ASSERT_EQ(queue.front(), line(popped++));
    }
    EXPECT_EQ(queue.size(), pushed - popped);
    for (; !queue.empty(); queue.pop()) ASSERT_EQ(queue.front(), line(popped++));
    EXPECT_EQ(popped, pushed);
}

}  // namespace
}  // namespace serverdll
