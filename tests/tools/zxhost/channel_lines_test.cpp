#include "channel_lines.h"

#include <gtest/gtest.h>

#include "moutputchannel.h"

namespace {

using namespace zxhost;

ChannelLine only_line(MOutputChannel& channel) {
    const auto lines = take_lines(channel);
    EXPECT_EQ(lines.size(), 1u);
    return lines.empty() ? ChannelLine{} : lines.front();
}

TEST(TakeLines, TakesEachKindApart) {
    MOutputChannel channel(7);
    channel.error("invalid axis");
    channel.warning("slow");
    channel.data(std::vector<double>{1.5, -0.25});
    channel.event("movement: end");
    const auto lines = take_lines(channel);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].id, "0007");
    EXPECT_EQ(lines[0].keyword, "error");
    EXPECT_EQ(lines[0].text, "invalid axis");
    EXPECT_EQ(lines[0].whole, "0007\terror \"invalid axis\"");
    EXPECT_EQ(lines[1].keyword, "warning");
    EXPECT_EQ(lines[2].text, "1.5 -0.25");
    EXPECT_EQ(lines[3].id, "0000");
    EXPECT_EQ(lines[3].text, "movement: end");
    EXPECT_TRUE(channel.is_empty());
    EXPECT_FALSE(channel.has_error());
}

TEST(TakeLines, UnwrapsACatalogueLineInsideALine) {
    MOutputChannel channel(12345);
    channel.error("error \"internal error\"");
    const ChannelLine line = only_line(channel);
    EXPECT_EQ(line.id, "12345");
    EXPECT_EQ(line.text, "internal error");
    EXPECT_EQ(line.whole, "12345\terror \"error \"internal error\"\"");
}

TEST(TakeLines, KeepsALineWithLineEndsInItsTextWhole) {
    MOutputChannel channel(3);
    channel.error("one\r\ntwo\r\n");
    EXPECT_EQ(only_line(channel).text, "one\r\ntwo\r\n");
}

TEST(TakeLines, KeepsQuotesInTexts) {
    MOutputChannel channel(3);
    channel.error("unknown axis \"q\"");
    EXPECT_EQ(only_line(channel).text, "unknown axis \"q\"");
}

TEST(TakeLines, BringsHeldBackEvents) {
    MOutputChannel channel(3);
    channel.event("capabilities changed");
    EXPECT_EQ(only_line(channel).text, "capabilities changed");
    EXPECT_TRUE(take_lines(channel).empty());
}

TEST(TakeLines, AnEmptyDataLineHasNoText) {
    MOutputChannel channel(3);
    channel.data(std::vector<double>{});
    const ChannelLine line = only_line(channel);
    EXPECT_EQ(line.keyword, "data");
    EXPECT_EQ(line.text, "");
}

}  // namespace
