#include "linesplitter.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

std::vector<std::string> all_lines(wire::LineSplitter& splitter) {
    std::vector<std::string> lines;
    std::string_view line;
    for (wire::Framing framing = splitter.next(line); framing != wire::Framing::none;
         framing = splitter.next(line)) {
        lines.push_back((framing == wire::Framing::too_long ? "too long: " : "") + std::string(line));
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(LineSplitter, TakesBothLineEnds) {
    wire::LineSplitter splitter;
    splitter.append("one\r\ntwo\n\r\nfour\rstill\r\nrest");
    EXPECT_EQ(all_lines(splitter), (Lines{"one", "two", "", "four\rstill"}));
    EXPECT_EQ(splitter.rest(), "rest");
}

TEST(LineSplitter, GivesTheSameLinesHoweverTheBytesAreCut) {
    std::mt19937 random(7);
    std::string text;
    Lines expected;
    for (int i = 0; i < 2000; ++i) {
        expected.emplace_back(random() % 90, static_cast<char>('a' + i % 26));
        text += expected.back() + (random() % 2 == 0 ? "\r\n" : "\n");
    }
    for (const std::size_t most : {1U, 2U, 7U, 100U, 70000U}) {
        wire::LineSplitter splitter(wire::max_line, 64);
        Lines got;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t count = 1 + random() % most;
            splitter.append(std::string_view(text).substr(at, count));
            at += count;
            for (std::string& line : all_lines(splitter)) got.push_back(std::move(line));
        }
        EXPECT_EQ(got, expected) << most;
    }
}

TEST(LineSplitter, TakesALineOfTheLimitAndTellsOneOverItOnce) {
    for (const char* const end : {"\r\n", "\n"}) {
        for (const std::size_t step : {std::size_t{1}, std::size_t{5}, std::size_t{1000}}) {
            wire::LineSplitter splitter(100, 16);
            const std::string text = std::string(100, 'a') + end + std::string(101, 'b') + end +
                                     std::string(300, 'c') + end + "d" + end;
            Lines got;
            for (std::size_t at = 0; at < text.size(); at += step) {
                splitter.append(std::string_view(text).substr(at, step));
                for (std::string& line : all_lines(splitter)) got.push_back(std::move(line));
            }
            EXPECT_EQ(got, (Lines{std::string(100, 'a'), "too long: " + std::string(80, 'b'),
                                  "too long: " + std::string(80, 'c'), "d"}))
                << step;
        }
    }
}

TEST(LineSplitter, WholeLinesCanBeTakenAway) {
    wire::LineSplitter splitter;
    splitter.append("one\r\ntwo\r\nthr");
    splitter.skip(5);
    EXPECT_EQ(splitter.rest(), "two\r\nthr");
    EXPECT_EQ(all_lines(splitter), Lines{"two"});
    splitter.append("ee\r\n");
    EXPECT_EQ(all_lines(splitter), Lines{"three"});
    splitter.skip(1);
    EXPECT_EQ(splitter.rest(), "");
}

TEST(LineSplitter, HoldsNoMoreThanALineAndARead) {
    wire::LineSplitter splitter(1000, 64);
    std::string_view line;
    for (int i = 0; i < 100000; ++i) {
        splitter.append("no end in sight ");
        while (splitter.next(line) != wire::Framing::none) continue;
        ASSERT_LE(splitter.rest().size(), 1001U);
    }
}

}  // namespace
