#include "tokens.h"

#include <gtest/gtest.h>

#include <random>

namespace {

TEST(Tokens, QuotedTextsCarryAnyBytes) {
    std::mt19937 random(5);
    for (int i = 0; i < 2000; ++i) {
        std::string text;
        for (std::size_t n = random() % 40; n > 0; --n) text.push_back(static_cast<char>(random() % 256));
        std::string quoted;
        wire::append_quoted(quoted, text);
        EXPECT_EQ(quoted.find_first_of(std::string_view("\r\n\0", 3)), std::string::npos);
        wire::TokenReader tokens(quoted);
        std::string read;
        ASSERT_TRUE(tokens.text(read)) << quoted;
        EXPECT_EQ(read, text);
        EXPECT_TRUE(tokens.at_end());
    }
}

TEST(Tokens, EscapesAreThoseOfTheReference) {
    std::string out;
    wire::append_quoted(out, std::string_view("a\"b\\c\r\n\t\0d", 10));
    EXPECT_EQ(out, R"("a\"b\\c\r\n\t\0d")");
}

TEST(Tokens, ReadsWhatATypedLineHolds) {
    wire::TokenReader tokens("  get now \"two words\"   7 -2.5 x ");
    std::string_view word;
    std::string text;
    double number = 0.0;
    std::int64_t integer = 0;
    EXPECT_FALSE(tokens.keyword("ge"));
    EXPECT_TRUE(tokens.keyword("get"));
    EXPECT_FALSE(tokens.text(text));
    EXPECT_TRUE(tokens.word(word));
    EXPECT_EQ(word, "now");
    EXPECT_FALSE(tokens.word(word));
    EXPECT_FALSE(tokens.number(number));
    EXPECT_TRUE(tokens.name(text));
    EXPECT_EQ(text, "two words");
    EXPECT_FALSE(tokens.integer(0, 6, integer));
    EXPECT_TRUE(tokens.integer(0, 7, integer));
    EXPECT_EQ(integer, 7);
    EXPECT_EQ(tokens.rest(), "-2.5 x ");
    EXPECT_TRUE(tokens.number(number));
    EXPECT_EQ(number, -2.5);
    EXPECT_TRUE(tokens.name(text));
    EXPECT_EQ(text, "x");
    EXPECT_TRUE(tokens.at_end());
    EXPECT_FALSE(tokens.name(text));
}

TEST(Tokens, ABrokenQuoteIsNoToken) {
    for (const char* broken : {"\"", "\"abc", "\"abc\\\"", "\"a\"b", "\"a\\x\"", "\"a\\"}) {
        wire::TokenReader tokens(broken);
        std::string text = "kept";
        EXPECT_FALSE(tokens.name(text)) << broken;
        EXPECT_EQ(text, "kept");
        EXPECT_EQ(tokens.rest(), broken);
    }
}

struct TargetRow {
    const char* text;
    const char* name;
    wire::TargetForm form;
    double value;
};

TEST(Tokens, PositionsHaveAllTheirForms) {
    const TargetRow rows[] = {{"\"x\"=12.5", "x", wire::TargetForm::absolute, 12.5},
                              {"\"x\"+=-1e3", "x", wire::TargetForm::relative, -1000.0},
                              {"\"x\"", "x", wire::TargetForm::none, 0.0},
                              {"\"x\"=min", "x", wire::TargetForm::lowest, 0.0},
                              {"\"x\"=max", "x", wire::TargetForm::highest, 0.0},
                              {"\"a b=1\"=2", "a b=1", wire::TargetForm::absolute, 2.0},
                              {"x=3", "x", wire::TargetForm::absolute, 3.0},
                              {"x+=3", "x", wire::TargetForm::relative, 3.0},
                              {"x", "x", wire::TargetForm::none, 0.0},
                              {";", "", wire::TargetForm::end_of_point, 0.0}};
    for (const TargetRow& row : rows) {
        wire::TokenReader tokens(row.text);
        wire::Target target;
        ASSERT_TRUE(tokens.target(target)) << row.text;
        EXPECT_TRUE(tokens.at_end()) << row.text;
        EXPECT_EQ(target.name, row.name) << row.text;
        EXPECT_EQ(target.form, row.form) << row.text;
        EXPECT_EQ(target.value, row.value) << row.text;
    }
}

TEST(Tokens, WhatIsNoPositionStaysWhereItIs) {
    for (const char* broken :
         {"", "=5", "+=5", "\"x\"=", "\"x\"+", "\"x\"+=min", "\"x\"=1.2.3", "\"x\" =1x=", "\"x", "x=a"}) {
        wire::TokenReader tokens(broken);
        std::vector<wire::Target> targets;
        EXPECT_EQ(tokens.targets(targets), *broken == '\0') << broken;
        EXPECT_TRUE(targets.size() <= 1) << broken;
    }
}

TEST(Tokens, ListsGoToTheEndOfTheLine) {
    std::vector<std::string> names;
    EXPECT_TRUE(wire::TokenReader("\"x\" y \"z z\"").names(names));
    EXPECT_EQ(names, (std::vector<std::string>{"x", "y", "z z"}));
    std::vector<double> numbers;
    EXPECT_TRUE(wire::TokenReader("1 2.5 -3").numbers(numbers));
    EXPECT_EQ(numbers, (std::vector<double>{1, 2.5, -3}));
    EXPECT_FALSE(wire::TokenReader("1 two").numbers(numbers));
    std::vector<wire::Target> targets;
    EXPECT_TRUE(wire::TokenReader("\"x\"=1 \"y\"=2 ; \"x\"=3 ;").targets(targets));
    EXPECT_EQ(targets.size(), 5U);
}

}  // namespace
