#include "completion.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

#include "line_app.h"

namespace {

using namespace zxhost;
using Words = std::vector<std::string>;

class CompletionTest : public ::testing::Test {
protected:
    Completions at(const std::string& text) { return complete(line.app(), vocabulary, text); }
    Words words(const std::string& text) { return at(text).words; }

    LineApp line{Settings{}};
    Vocabulary vocabulary{[] {
                              return Words{"x", "y", "table left", "x"};
                          },
                          [] {
                              return Words{"3", "12", "3"};
                          },
                          [] {
                              return Words{"Fixed head", "Star"};
                          }};
};

TEST_F(CompletionTest, VerbsAtTheFrontOfTheLine) {
    EXPECT_EQ(words("mo"), Words{"move"});
    EXPECT_EQ(words("probesystem"), (Words{"probesystem", "probesystems"}));
    EXPECT_EQ(words("qqq"), Words{});
    EXPECT_GT(words("").size(), 15u);
    EXPECT_EQ(at("").file_names, false);
}

TEST_F(CompletionTest, PartsOfAVerb) {
    EXPECT_EQ(words("probesystem de"), (Words{"define", "delete"}));
    EXPECT_EQ(words("scan ci"), Words{"circle"});
}

TEST_F(CompletionTest, OptionsOfTheVerbAndOfAllVerbs) {
    EXPECT_EQ(words("circle --ra"), Words{"--radius"});
    EXPECT_EQ(words("move x=1 --fo"), Words{"--format"});
    EXPECT_EQ(words("--li"), Words{"--lines"});
    EXPECT_EQ(words("info --format j"), Words{"json"});
}

TEST_F(CompletionTest, NamesOfTheMachineWhereTheVerbTakesThem) {
    EXPECT_EQ(words("get "), (Words{"\"table left\"", "x", "y"}));
    EXPECT_EQ(words("move y=1 x"), Words{"x="});
    EXPECT_EQ(words("probe load "), (Words{"12", "3"}));
    EXPECT_EQ(words("probesystem load F"), Words{"\"Fixed head\""});
    EXPECT_EQ(words("move x=1"), Words{});
}

TEST_F(CompletionTest, AWordInQuotesIsReplacedFromItsQuote) {
    const Completions found = at("get x 'table l");
    EXPECT_EQ(found.words, Words{"\"table left\""});
    EXPECT_EQ(found.begin, 6u);
}

TEST_F(CompletionTest, FilesWhereAFileIsNamedAndNothingInComments) {
    EXPECT_TRUE(at("run par").file_names);
    EXPECT_FALSE(at("send par").file_names);
    EXPECT_EQ(words("send "), Words{});
    EXPECT_TRUE(at("send --lines a par").file_names);
    EXPECT_TRUE(at("receive --format json a").file_names == false);
    EXPECT_TRUE(at("magazine set ").file_names);
    EXPECT_FALSE(at("magazine set m.ini ").file_names);
    EXPECT_EQ(words("magazine set m.ini "), Words{});
    EXPECT_EQ(words("magazine show m.ini --system F"), Words{"\"Fixed head\""});
    EXPECT_EQ(words("get x # y"), Words{});
}

}  // namespace
