#include "line_words.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "exit_status.h"

namespace {

using namespace zxhost;
using Words = std::vector<std::string>;

TEST(LineWords, BlanksDivideAndQuotesHoldTogether) {
    EXPECT_EQ(words_of("move x=1\ty+=2  "), (Words{"move", "x=1", "y+=2"}));
    EXPECT_EQ(words_of(R"(load 'Fixed head' "it's" a'b c'd "")"),
              (Words{"load", "Fixed head", "it's", "ab cd", ""}));
    EXPECT_EQ(words_of(R"(--csv C:\part\n.csv)"), (Words{"--csv", R"(C:\part\n.csv)"}));
    EXPECT_EQ(words_of(" \t "), Words{});
}

TEST(LineWords, AHashAtTheFrontOfAWordBeginsAComment) {
    EXPECT_EQ(words_of("get x # all of 'it"), (Words{"get", "x"}));
    EXPECT_EQ(words_of("# nothing"), Words{});
    EXPECT_EQ(words_of("get a#b '#c'"), (Words{"get", "a#b", "#c"}));
}

TEST(LineWords, TheProgramsNameAndACarriageReturnAreNoWords) {
    EXPECT_EQ(words_of("zxhost get x\r"), (Words{"get", "x"}));
    EXPECT_EQ(words_of("\r"), Words{});
}

TEST(LineWords, WhatIsNoLineIsRefused) {
    EXPECT_THROW(words_of("get 'x"), HostError);
    EXPECT_THROW(words_of("get \"x'"), HostError);
    EXPECT_THROW(words_of(std::string_view("get\0x", 5)), HostError);
    EXPECT_THROW(words_of("get \x1b[2J"), HostError);
    EXPECT_THROW(words_of("get\rx"), HostError);
    EXPECT_THROW(words_of(std::string(longest_line + 1, 'x')), HostError);
    EXPECT_EQ(words_of(std::string(longest_line, 'x')).size(), 1u);
}

TEST(LineWords, TellsWhereTheLastWordBegins) {
    EXPECT_EQ(split_line("move x").last_begin, 5u);
    EXPECT_EQ(split_line("move ").last_begin, 5u);
    EXPECT_EQ(split_line("move 'a b").last_begin, 5u);
    EXPECT_EQ(split_line("move 'a b").open_quote, '\'');
    EXPECT_EQ(split_line("").last_begin, 0u);
    EXPECT_TRUE(split_line("move #x").in_comment);
}

RC_GTEST_PROP(LineWordsProperty, AnyTextComesBackFromItsQuotes, ()) {
    auto words = *rc::gen::container<Words>(
        rc::gen::container<std::string>(rc::gen::elementOf(std::string("ab '\"#\\=\t"))));
    std::string line = "verb";
    for (const std::string& word : words) line += " " + in_quotes(word);
    words.insert(words.begin(), "verb");
    RC_ASSERT(words_of(line) == words);
}

}  // namespace
