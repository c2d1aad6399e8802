#include "moutputchannel.h"

#include <gtest/gtest.h>

#include <climits>

#include "expected_messages.h"
#include "recording_facilities.h"

namespace {

constexpr char capabilities_line[] = "0000\tevent \"capabilities changed\"\r\n";
constexpr char machine_line[] = "0000\tevent \"machine changed\"\r\n";

// A channel that a test may look into, and that leaves nothing to report.
class Channel : public MOutputChannel {
public:
    explicit Channel(int transaction_id = 7) : MOutputChannel(transaction_id) {}
    ~Channel() override { clear(); }

    using MOutputChannel::m_prefix;
    using MOutputChannel::m_text;

    std::string take(bool with_pending = true) {
        std::string text = "old";
        take_text(text, with_pending);
        return text;
    }
};

class MOutputChannelTest : public testing::Test {
protected:
    void SetUp() override { recording::reset(); }
    void TearDown() override { EXPECT_EQ(recording::error_log(), std::vector<std::string>()); }

    Channel m_channel;
};

TEST_F(MOutputChannelTest, PrefixIsTheTransactionWithAtLeastFourDigits) {
    EXPECT_EQ(m_channel.m_prefix, "0007\t");
    EXPECT_EQ(Channel(0).m_prefix, "0000\t");
    EXPECT_EQ(Channel(9999).m_prefix, "9999\t");
    EXPECT_EQ(Channel(12345).m_prefix, "12345\t");
    EXPECT_EQ(Channel(INT_MAX).m_prefix, "2147483647\t");
    EXPECT_EQ(Channel(-7).m_prefix, "-0007\t");
    EXPECT_EQ(Channel(INT_MIN).m_prefix, "-2147483648\t");
}

TEST_F(MOutputChannelTest, StartsEmptyWithRoomForSmallTransactions) {
    EXPECT_GE(m_channel.m_text.capacity(), 1000U);
    EXPECT_TRUE(m_channel.is_empty());
    EXPECT_FALSE(m_channel.has_error());
    EXPECT_FALSE(m_channel.is_fatal());
    EXPECT_FALSE(m_channel.any_event_bit());
    EXPECT_EQ(m_channel.get_text(), "");
}

TEST_F(MOutputChannelTest, LinesHaveTheirExactForms) {
    m_channel.error(4);
    EXPECT_EQ(m_channel.take(), "0007\terror \"invalid axis\"\r\n");
    m_channel.error("no way");
    EXPECT_EQ(m_channel.take(), "0007\terror \"no way\"\r\n");
    m_channel.warning(10004);
    EXPECT_EQ(m_channel.take(), "0007\twarning \"operation with no effect\"\r\n");
    m_channel.warning("slow");
    EXPECT_EQ(m_channel.take(), "0007\twarning \"slow\"\r\n");
    m_channel.data(std::vector<double>{1.5, -0.25, 0.0});
    EXPECT_EQ(m_channel.take(), "0007\tdata 1.5 -0.25 0\r\n");
    m_channel.data("x z c");
    EXPECT_EQ(m_channel.take(), "0007\tdata x z c\r\n");
    m_channel.event(12);
    EXPECT_EQ(m_channel.take(), "0000\tevent \"movement: end\"\r\n");
    m_channel.event("door open");
    EXPECT_EQ(m_channel.take(), "0000\tevent \"door open\"\r\n");
}

TEST_F(MOutputChannelTest, DataWithoutValuesIsTheBareWord) {
    m_channel.data(std::vector<double>());
    EXPECT_EQ(m_channel.take(), "0007\tdata\r\n");
    m_channel.data(std::string());
    EXPECT_EQ(m_channel.take(), "0007\tdata \r\n");
}

TEST_F(MOutputChannelTest, UnknownNumbersHaveTheCataloguesForm) {
    m_channel.error(51);
    m_channel.warning(3);
    m_channel.event(68);
    EXPECT_EQ(m_channel.take(),
              "0007\terror \"unknown error number 51\"\r\n"
              "0007\twarning \"unknown warning number 3\"\r\n"
              "0000\tevent \"unknown event number 68\"\r\n");
}

TEST_F(MOutputChannelTest, TextsPassUnchanged) {
    const std::string nasty = std::string("a \"b\"\r\nc\0d\t%s", 13) + std::string(100'000, 'x');
    m_channel.error(nasty);
    EXPECT_EQ(m_channel.take(), "0007\terror \"" + nasty + "\"\r\n");
    m_channel.warning(nasty);
    EXPECT_EQ(m_channel.take(), "0007\twarning \"" + nasty + "\"\r\n");
    m_channel.data(nasty);
    EXPECT_EQ(m_channel.take(), "0007\tdata " + nasty + "\r\n");
    m_channel.event(nasty);
    EXPECT_EQ(m_channel.take(), "0000\tevent \"" + nasty + "\"\r\n");
}

TEST_F(MOutputChannelTest, OnlyErrorsSetTheErrorMark) {
    m_channel.warning(10000);
    m_channel.warning("w");
    m_channel.data("d");
    m_channel.event(3);
    EXPECT_FALSE(m_channel.has_error());
    m_channel.error(1);
    EXPECT_TRUE(m_channel.has_error());
    m_channel.clear_error();
    EXPECT_FALSE(m_channel.has_error());
    m_channel.error("free");
    EXPECT_TRUE(m_channel.has_error());
}

TEST_F(MOutputChannelTest, HeldBackEventsComeOnceAndLast) {
    m_channel.event(8);
    for (int i = 0; i < 3; ++i) m_channel.event(1);
    m_channel.event("machine changed");
    m_channel.event(12);
    EXPECT_EQ(m_channel.take(),
              std::string("0000\tevent \"movement: end\"\r\n") + capabilities_line + machine_line);
    EXPECT_EQ(m_channel.take(), "");
}

TEST_F(MOutputChannelTest, OneEventHeldBackComesBehindALaterLine) {
    for (int i = 0; i < 3; ++i) m_channel.event(1);
    m_channel.event(12);
    std::string text;
    EXPECT_TRUE(m_channel.take_text(text, true));
    EXPECT_EQ(text, std::string("0000\tevent \"movement: end\"\r\n") + capabilities_line);
}

TEST_F(MOutputChannelTest, HeldBackEventsAreKnownByTextToo) {
    m_channel.event("capabilities changed");
    EXPECT_TRUE(m_channel.is_empty());
    EXPECT_TRUE(m_channel.test_event_bit(1));
    EXPECT_EQ(m_channel.take(), capabilities_line);
}

TEST_F(MOutputChannelTest, TakingWithoutPendingLeavesThemButClearsTheirBits) {
    m_channel.event(1);
    EXPECT_TRUE(m_channel.test_event_bit(1));
    std::string text = "old";
    EXPECT_FALSE(m_channel.take_text(text, false));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(m_channel.test_event_bit(1));
    EXPECT_FALSE(m_channel.any_event_bit());
    EXPECT_EQ(m_channel.take(), capabilities_line);
}

TEST_F(MOutputChannelTest, GetTextShowsPendingLinesAndConsumesNothing) {
    m_channel.event(8);
    m_channel.event(1);
    m_channel.error(10);
    const std::string all = std::string("0007\terror \"aborted\"\r\n") + capabilities_line + machine_line;
    EXPECT_EQ(m_channel.get_text(), all);
    EXPECT_EQ(m_channel.get_text(), all);
    EXPECT_TRUE(m_channel.test_event_bit(8));
    EXPECT_EQ(m_channel.take(), all);
}

TEST_F(MOutputChannelTest, EmptyMeansNoTextWhateverIsPending) {
    m_channel.event(1);
    EXPECT_TRUE(m_channel.is_empty());
    m_channel.add_pending_events();
    EXPECT_FALSE(m_channel.is_empty());
    m_channel.add_pending_events();
    EXPECT_EQ(m_channel.take(), capabilities_line);
    EXPECT_TRUE(m_channel.is_empty());
}

TEST_F(MOutputChannelTest, TakingReplacesTheTargetAndKeepsTheFlags) {
    m_channel.error(1);
    m_channel.set_fatal();
    m_channel.event(3);
    std::string text = "old";
    EXPECT_TRUE(m_channel.take_text(text, true));
    EXPECT_EQ(text, "0007\terror \"syntax invalid\"\r\n0000\tevent \"measurement begin\"\r\n");
    EXPECT_TRUE(m_channel.has_error());
    EXPECT_TRUE(m_channel.is_fatal());
    EXPECT_FALSE(m_channel.any_event_bit());
    EXPECT_FALSE(m_channel.take_text(text, true));
    EXPECT_EQ(text, "");
}

TEST_F(MOutputChannelTest, TakingIntoTheTextItselfIsSafe) {
    m_channel.error(1);
    EXPECT_FALSE(m_channel.take_text(m_channel.m_text, true));
    EXPECT_TRUE(m_channel.is_empty());
}

TEST_F(MOutputChannelTest, ClearingKeepsTheFatalMarkAlone) {
    m_channel.set_fatal();
    m_channel.error(1);
    m_channel.event(1);
    m_channel.event(8);
    m_channel.event("no such text");
    m_channel.clear();
    EXPECT_TRUE(m_channel.is_fatal());
    EXPECT_FALSE(m_channel.has_error());
    EXPECT_FALSE(m_channel.any_event_bit());
    EXPECT_EQ(m_channel.get_text(), "");
}

TEST_F(MOutputChannelTest, AppendingAddsTextFlagsAndBits) {
    Channel other(8);
    other.error(1);
    other.event(8);
    other.event(1);
    other.event("no such text");
    other.set_fatal();
    m_channel.event(12);
    EXPECT_EQ(&m_channel.append_channel(other), &m_channel);
    EXPECT_TRUE(m_channel.has_error());
    EXPECT_TRUE(m_channel.is_fatal());
    for (const int number : {1, 8, 12}) EXPECT_TRUE(m_channel.test_event_bit(number)) << number;
    const std::string theirs = "0008\terror \"syntax invalid\"\r\n0000\tevent \"no such text\"\r\n";
    const std::string pending = std::string(capabilities_line) + machine_line;
    EXPECT_EQ(m_channel.take(), "0000\tevent \"movement: end\"\r\n" + theirs + pending);
    EXPECT_TRUE(other.test_event_bit(8));
    EXPECT_FALSE(other.test_event_bit(12));
    EXPECT_EQ(other.take(), theirs + pending);
    EXPECT_TRUE(other.has_error());
}

TEST_F(MOutputChannelTest, AppendingTakesNoFlagAway) {
    m_channel.error(1);
    m_channel.set_fatal();
    m_channel.event(1);
    m_channel.append_channel(Channel(8));
    EXPECT_TRUE(m_channel.has_error());
    EXPECT_TRUE(m_channel.is_fatal());
    EXPECT_EQ(m_channel.take(), std::string("0007\terror \"syntax invalid\"\r\n") + capabilities_line);
}

TEST_F(MOutputChannelTest, TransferringMovesAllButTheFatalMark) {
    Channel target(8);
    m_channel.error(1);
    m_channel.event(1);
    m_channel.set_fatal();
    m_channel.transfer_to(target);
    EXPECT_EQ(m_channel.get_text(), "");
    EXPECT_FALSE(m_channel.has_error());
    EXPECT_FALSE(m_channel.any_event_bit());
    EXPECT_TRUE(m_channel.is_fatal());
    EXPECT_TRUE(target.has_error());
    EXPECT_TRUE(target.is_fatal());
    EXPECT_TRUE(target.test_event_bit(1));
    EXPECT_EQ(target.take(), std::string("0007\terror \"syntax invalid\"\r\n") + capabilities_line);
}

TEST_F(MOutputChannelTest, EveryEventSetsItsBitByNumberAndByText) {
    for (const auto& [number, text] : expected_events) {
        Channel by_number;
        by_number.event(number);
        Channel by_text;
        by_text.event(text);
        EXPECT_EQ(by_text.set_event_bit("event \"" + text + "\""), number);
        for (int other = 0; other <= 96; ++other) {
            ASSERT_EQ(by_number.test_event_bit(other), other == number) << text;
            ASSERT_EQ(by_text.test_event_bit(other), other == number) << text;
        }
        EXPECT_EQ(by_number.take(), by_text.take());
    }
}

TEST_F(MOutputChannelTest, UnassignedNumbersAreFoundByTheirFormedText) {
    for (const int number : {0, 68, 86, 87}) {
        m_channel.event("unknown event number " + std::to_string(number));
        EXPECT_TRUE(m_channel.test_event_bit(number)) << number;
        EXPECT_EQ(m_channel.take(),
                  "0000\tevent \"unknown event number " + std::to_string(number) + "\"\r\n");
    }
}

TEST_F(MOutputChannelTest, UnknownEventTextGoesOutAndSetsNoBitOfANumber) {
    recording::set_trace_level(4);
    m_channel.event("no such text");
    EXPECT_EQ(m_channel.get_text(), "0000\tevent \"no such text\"\r\n");
    for (int number = -1; number <= 98; ++number) EXPECT_FALSE(m_channel.test_event_bit(number)) << number;
    EXPECT_TRUE(m_channel.any_event_bit());
    ASSERT_EQ(recording::trace().size(), 1U);
    EXPECT_EQ(recording::trace()[0].channel, "default");
    EXPECT_EQ(recording::trace()[0].level, 4);
    EXPECT_EQ(recording::trace()[0].text, "set_event_bit(): unknown event: 97");
}

TEST_F(MOutputChannelTest, NumbersOutsideTheCatalogueAreTracedAtLevelFourOnly) {
    recording::set_trace_level(3);
    m_channel.event(97);
    EXPECT_TRUE(recording::trace().empty());
    recording::set_trace_level(4);
    std::vector<std::string> expected;
    for (const int number : {97, 98, 128, -1, INT_MAX, INT_MIN}) {
        m_channel.set_event_bit(number);
        EXPECT_FALSE(m_channel.test_event_bit(number)) << number;
        expected.push_back("set_event_bit(): unknown event: " + std::to_string(number));
    }
    std::vector<std::string> traced;
    for (const auto& line : recording::trace()) traced.push_back(line.text);
    EXPECT_EQ(traced, expected);
    EXPECT_TRUE(m_channel.any_event_bit());
    EXPECT_EQ(m_channel.take(), "0000\tevent \"unknown event number 97\"\r\n");
}

TEST_F(MOutputChannelTest, KnownNumbersAreNotTraced) {
    recording::set_trace_level(9);
    for (int number = 0; number <= 96; ++number) m_channel.set_event_bit(number);
    EXPECT_TRUE(recording::trace().empty());
    EXPECT_TRUE(m_channel.is_empty());
    for (int number = 0; number <= 96; ++number) EXPECT_TRUE(m_channel.test_event_bit(number)) << number;
}

TEST_F(MOutputChannelTest, EventTextsAreComparedWholeAndExactly) {
    EXPECT_EQ(m_channel.set_event_bit("event \"door open\""), 63);
    for (const char* text :
         {"door open", "event \"Door open\"", "event \"door open", "event \"door open\" ", ""}) {
        EXPECT_EQ(m_channel.set_event_bit(text), 97) << text;
    }
}

// A host's own channel.
class Overriding : public MOutputChannel {
public:
    Overriding() : MOutputChannel(7) {}
    ~Overriding() override { EXPECT_TRUE(is_empty()); }
    void error(int) override { ADD_FAILURE(); }
    void error(const std::string& text) override { m_seen.push_back("e " + text); }
    void warning(int) override { ADD_FAILURE(); }
    void warning(const std::string& text) override { m_seen.push_back("w " + text); }
    void data(const std::vector<double>&) override { ADD_FAILURE(); }
    void data(const std::string& text) override { m_seen.push_back("d " + text); }
    void event(int) override { ADD_FAILURE(); }
    void event(const std::string& text) override { m_seen.push_back("v " + text); }

    std::vector<std::string> m_seen;
};

TEST_F(MOutputChannelTest, FormattingGoesThroughTheVirtualOperationsAndTouchesNoField) {
    Overriding channel;
    channel.errorf("%s %d", "e", 1);
    channel.warningf("%5.2f", 2.5);
    channel.dataf("%%");
    channel.eventf("%c", 'x');
    EXPECT_EQ(channel.m_seen, (std::vector<std::string>{"e e 1", "w  2.50", "d %", "v x"}));
    EXPECT_TRUE(channel.is_empty());
    EXPECT_FALSE(channel.has_error());
    EXPECT_FALSE(channel.any_event_bit());
}

TEST_F(MOutputChannelTest, FormattedTextsOfAnyLengthAreWhole) {
    for (const std::size_t length : {0U, 1U, 1022U, 1023U, 1024U, 1025U, 100'000U}) {
        const std::string text(length, 'y');
        m_channel.errorf("%s", text.c_str());
        EXPECT_TRUE(m_channel.has_error());
        EXPECT_EQ(m_channel.take(), "0007\terror \"" + text + "\"\r\n");
    }
}

TEST_F(MOutputChannelTest, FormattedEventsAreHeldBackLikeOthers) {
    m_channel.eventf("%s changed", "capabilities");
    m_channel.dataf("%d", 5);
    EXPECT_EQ(m_channel.take(), std::string("0007\tdata 5\r\n") + capabilities_line);
}

class MOutputChannelEndTest : public testing::Test {
protected:
    void SetUp() override { recording::reset(); }
};

TEST_F(MOutputChannelEndTest, UncollectedTextIsReported) {
    { MOutputChannel(42).error(4); }
    EXPECT_EQ(recording::error_log(),
              (std::vector<std::string>{"~MOutputChannel(): Not all entries cleared for 0042\t!",
                                        "~MOutputChannel(): \"0042\terror \"invalid axis\"\r\n\""}));
}

TEST_F(MOutputChannelEndTest, AHeldBackEventAloneIsReportedToo) {
    { MOutputChannel(42).event(8); }
    EXPECT_EQ(recording::error_log(),
              (std::vector<std::string>{"~MOutputChannel(): Not all entries cleared for 0042\t!",
                                        std::string("~MOutputChannel(): \"") + machine_line + "\""}));
}

TEST_F(MOutputChannelEndTest, ACollectedChannelEndsInSilence) {
    {
        MOutputChannel channel(42);
        channel.error(4);
        channel.set_fatal();
        channel.event(1);
        std::string text;
        channel.take_text(text, true);
    }
    EXPECT_TRUE(recording::error_log().empty());
}

}  // namespace
