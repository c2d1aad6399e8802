#include "messagecatalogue.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <thread>

#include "expected_messages.h"

namespace {

std::string formed(const std::string& keyword, const std::string& text) {
    return keyword + " \"" + text + "\"";
}

// One kind of message: its whole table and what the catalogue says.
struct Kind {
    std::string keyword;
    const std::map<int, std::string>* expected;
    const char* (*text_of)(int);
};

const Kind kinds[] = {{"error", &expected_errors, error_text},
                      {"warning", &expected_warnings, warning_text},
                      {"event", &expected_events, event_text}};

TEST(MessageCatalogue, EveryNumberHasItsTextAndAllOthersTheUnknownForm) {
    for (const Kind& kind : kinds) {
        for (int number = -5; number <= 10100; ++number) {
            const auto known = kind.expected->find(number);
            const std::string unknown = "unknown " + kind.keyword + " number " + std::to_string(number);
            const std::string text = known != kind.expected->end() ? known->second : unknown;
            ASSERT_EQ(kind.text_of(number), formed(kind.keyword, text));
        }
    }
}

TEST(MessageCatalogue, ExtremeNumbersFitTheBuffers) {
    EXPECT_STREQ(error_text(INT_MIN), "error \"unknown error number -2147483648\"");
    EXPECT_STREQ(warning_text(INT_MIN), "warning \"unknown warning number -2147483648\"");
    EXPECT_STREQ(event_text(INT_MAX), "event \"unknown event number 2147483647\"");
    EXPECT_STREQ(event_name(INT_MIN), "unknown event number -2147483648");
}

TEST(MessageCatalogue, EventNamesAreBare) {
    for (int number = -2; number <= 100; ++number) {
        const auto known = expected_events.find(number);
        const std::string unknown = "unknown event number " + std::to_string(number);
        EXPECT_EQ(event_name(number), known != expected_events.end() ? known->second : unknown);
    }
}

TEST(MessageCatalogue, GapsAndEndsOfTheEventsAreUnknown) {
    EXPECT_STREQ(event_text(68), "event \"unknown event number 68\"");
    EXPECT_STREQ(event_name(68), "unknown event number 68");
    EXPECT_STREQ(event_text(97), "event \"unknown event number 97\"");
    EXPECT_STREQ(event_text(0), "event \"unknown event number 0\"");
    EXPECT_STREQ(warning_text(10005), "warning \"unknown warning number 10005\"");
    EXPECT_STREQ(error_text(99), "error \"unknown error number 99\"");
}

TEST(MessageCatalogue, NumbersAreFoundByTheFullTextAlone) {
    for (const auto& [number, text] : expected_errors) {
        EXPECT_EQ(error_number(formed("error", text).c_str()), number);
        EXPECT_EQ(error_number(text.c_str()), 0) << text;
        EXPECT_EQ(error_number((formed("error", text) + " ").c_str()), 0) << text;
    }
    for (const auto& [number, text] : expected_warnings) {
        EXPECT_EQ(warning_number(formed("warning", text).c_str()), number);
        EXPECT_EQ(warning_number(text.c_str()), 0) << text;
    }
    EXPECT_EQ(error_number("error \"aborted\""), 10);
    EXPECT_EQ(error_number("aborted"), 0);
    EXPECT_EQ(error_number("error \"Aborted\""), 0);
    EXPECT_EQ(error_number(""), 0);
}

TEST(MessageCatalogue, ErrorsAreSearchedOneBeyondTheTable) {
    EXPECT_EQ(error_number("error \"unknown error number 51\""), 51);
    EXPECT_EQ(error_number("error \"unknown error number 52\""), 0);
    EXPECT_EQ(error_number("error \"unknown error number 0\""), 0);
    EXPECT_EQ(warning_number("warning \"unknown warning number 10005\""), 0);
    EXPECT_EQ(warning_number("warning \"unknown warning number 9999\""), 0);
}

TEST(MessageCatalogue, TheKeywordTellsEqualTextsApart) {
    EXPECT_STREQ(error_text(46), "error \"keypad: enabled\"");
    EXPECT_STREQ(event_text(14), "event \"keypad: enabled\"");
    EXPECT_STREQ(error_text(47), "error \"keypad: disabled\"");
    EXPECT_STREQ(event_text(15), "event \"keypad: disabled\"");
    EXPECT_EQ(error_number("event \"keypad: enabled\""), 0);
    EXPECT_EQ(error_number("warning \"machine: emergency\""), 0);
    EXPECT_EQ(error_number("error \"machine: emergency\""), 43);
    EXPECT_EQ(warning_number("warning \"machine: emergency\""), 10000);
    EXPECT_EQ(warning_number("error \"machine: emergency\""), 0);
    EXPECT_EQ(error_number("error \"machine: not initialized\""), 44);
    EXPECT_EQ(warning_number("warning \"machine: not initialized\""), 10001);
    EXPECT_EQ(error_number("error \"argument out of range\""), 9);
    EXPECT_EQ(warning_number("warning \"argument out of range\""), 10002);
}

TEST(MessageCatalogue, EachFunctionHasABufferOfItsOwnThatItsNextUnknownNumberOverwrites) {
    const char* const error = error_text(99);
    const char* const warning = warning_text(99);
    const char* const event = event_text(99);
    const char* const name = event_name(99);
    EXPECT_STREQ(error, "error \"unknown error number 99\"");
    EXPECT_STREQ(warning, "warning \"unknown warning number 99\"");
    EXPECT_STREQ(event, "event \"unknown event number 99\"");
    EXPECT_STREQ(name, "unknown event number 99");
    EXPECT_EQ(error_text(100), error);
    EXPECT_STREQ(error, "error \"unknown error number 100\"");
}

TEST(MessageCatalogue, ThreadsDoNotShareTheBuffers) {
    const char* const mine = error_text(99);
    const char* theirs = nullptr;
    std::thread([&] { theirs = error_text(77); }).join();
    EXPECT_NE(theirs, mine);
    EXPECT_STREQ(mine, "error \"unknown error number 99\"");
}

}  // namespace
