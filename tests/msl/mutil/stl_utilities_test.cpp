#include <cmath>
#include <limits>

#include "format_through_va.h"
#include "reports.h"

namespace {

using StlUtilitiesTest = ReportsTest;

Texts tokens(const std::string& text, const char* delimiters) {
    Texts out;
    stl_string_tokenize(text, delimiters, out);
    return out;
}

std::string applied(void (*function)(std::string&), std::string text) {
    function(text);
    return text;
}

template <class... Arguments>
std::string appended(std::string text, Arguments... arguments) {
    stl_string_append(text, arguments...);
    return text;
}

TEST_F(StlUtilitiesTest, FormatsShortAndLongTexts) {
    EXPECT_EQ("a 7 b", stl_string_format("%s %d %s", "a", 7, "b"));
    EXPECT_EQ("", stl_string_format("%s", ""));
    for (const std::size_t length : {1022U, 1023U, 1024U, 1025U, 100000U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(text, stl_string_format("%s", text.c_str()));
        EXPECT_EQ(text, format_through_va("%s", text.c_str()));
    }
}

TEST_F(StlUtilitiesTest, TheFormattedTextEndsAtItsFirstNul) {
    EXPECT_EQ("ab", stl_string_format("ab%ccd", 0));
    EXPECT_EQ("ab", stl_string_format("ab%c%2000s", 0, ""));
}

TEST_F(StlUtilitiesTest, PrintfMayReadItsOwnTarget) {
    std::string s = "text";
    stl_string_printf(s, "%s and %s", s.c_str(), s.c_str());
    EXPECT_EQ("text and text", s);
}

TEST_F(StlUtilitiesTest, CaseChangesLettersOnly) {
    EXPECT_EQ("AZ09 \xE4[]", applied(stl_string_toupper, "aZ09 \xE4[]"));
    EXPECT_EQ("az09 \xC4[]", applied(stl_string_tolower, "aZ09 \xC4[]"));
}

TEST_F(StlUtilitiesTest, TokenizeMakesNoEmptyTokens) {
    EXPECT_EQ((Texts{"1", "2"}), tokens(".1..2.", "."));
    EXPECT_EQ(Texts{}, tokens("", "."));
    EXPECT_EQ(Texts{}, tokens("...", "."));
    EXPECT_EQ((Texts{"one", "two", "three"}), tokens("one\r\n\r\ntwo\rthree\n", "\r\n"));
    EXPECT_EQ(Texts{"whole"}, tokens("whole", ""));
}

TEST_F(StlUtilitiesTest, TokenizeAppends) {
    Texts out{"before"};
    stl_string_tokenize("a,b", ",", out);
    EXPECT_EQ((Texts{"before", "a", "b"}), out);
}

TEST_F(StlUtilitiesTest, StripCommentTakesOneKindInAFixedOrder) {
    EXPECT_EQ("key ", applied(stl_string_strip_comment, "key // a ; b"));
    EXPECT_EQ("a ; b ", applied(stl_string_strip_comment, "a ; b /* c"));
    EXPECT_EQ("a ", applied(stl_string_strip_comment, "a ; b"));
    EXPECT_EQ("a ; b /* c ", applied(stl_string_strip_comment, "a ; b /* c // d"));
    EXPECT_EQ("a / b * c", applied(stl_string_strip_comment, "a / b * c"));
}

TEST_F(StlUtilitiesTest, StripRemovesAllWhiteSpace) {
    EXPECT_EQ("ab", applied(stl_string_strip, "a b // c"));
    EXPECT_EQ("ab", applied(stl_string_strip, " \t\r\n\v\fa\tb "));
    EXPECT_EQ(
        "a\xA0"
        "b",
        applied(stl_string_strip, "a\xA0 b"));
    EXPECT_EQ("", applied(stl_string_strip, "; all comment"));
}

TEST_F(StlUtilitiesTest, JoinPutsTheSeparatorBetween) {
    std::string out = "old";
    stl_string_join(out, ", ", {"a", "", "c"});
    EXPECT_EQ("a, , c", out);
    stl_string_join(out, nullptr, {"a", "b"});
    EXPECT_EQ("ab", out);
    stl_string_join(out, ",", {});
    EXPECT_EQ("", out);
}

TEST_F(StlUtilitiesTest, ReplaceAllDoesNotSearchWhatItPutIn) {
    std::string s = "a-a-";
    EXPECT_EQ(2U, stl_string_replace_all(s, "a", "aa"));
    EXPECT_EQ("aa-aa-", s);
    EXPECT_EQ(0U, stl_string_replace_all(s, "x", "y"));
    EXPECT_EQ(0U, stl_string_replace_all(s, "", "y"));
    EXPECT_EQ(2U, stl_string_replace_all(s, "-", ""));
    EXPECT_EQ("aaaa", s);
    std::string overlapping = "aaa";
    EXPECT_EQ(1U, stl_string_replace_all(overlapping, "aa", "b"));
    EXPECT_EQ("ba", overlapping);
}

TEST_F(StlUtilitiesTest, ToDoubleTellsHowFarItCame) {
    double out = -1;
    EXPECT_TRUE(stl_string_to_double("  12.5", out, true));
    EXPECT_EQ(12.5, out);
    EXPECT_FALSE(stl_string_to_double("12.5x", out, true));
    EXPECT_EQ(12.5, out);
    EXPECT_TRUE(stl_string_to_double("1e3x", out, false));
    EXPECT_EQ(1000.0, out);
    EXPECT_FALSE(stl_string_to_double("x", out, false));
    EXPECT_EQ(0.0, out);
    EXPECT_TRUE(stl_string_to_double("", out, true));
    EXPECT_FALSE(stl_string_to_double("", out, false));
    EXPECT_TRUE(stl_string_to_double("1e999", out, true));
    EXPECT_EQ(std::numeric_limits<double>::infinity(), out);
    EXPECT_TRUE(stl_string_to_double("0x10", out, true));
    EXPECT_EQ(16.0, out);
    EXPECT_FALSE(stl_string_to_double(std::string("1\0", 2), out, true));
}

TEST_F(StlUtilitiesTest, ToLongClampsTo32Bits) {
    long out = -1;
    EXPECT_TRUE(stl_string_to_long(" -12", out, true));
    EXPECT_EQ(-12, out);
    EXPECT_TRUE(stl_string_to_long("12abc", out, false));
    EXPECT_EQ(12, out);
    EXPECT_FALSE(stl_string_to_long("12abc", out, true));
    EXPECT_TRUE(stl_string_to_long("2147483648", out, true));
    EXPECT_EQ(2147483647, out);
    EXPECT_TRUE(stl_string_to_long("-99999999999999999999", out, true));
    EXPECT_EQ(-2147483647L - 1, out);
    EXPECT_TRUE(stl_string_to_long("", out, true));
    EXPECT_FALSE(stl_string_to_long("", out, false));
    EXPECT_EQ(0, out);
}

TEST_F(StlUtilitiesTest, AppendsIntegers) {
    EXPECT_EQ("x-5", appended("x", -5));
    EXPECT_EQ("4294967295", appended("", 4294967295U));
    EXPECT_EQ("-7", appended("", -7L));
    EXPECT_EQ("7", appended("", 7UL));
    EXPECT_EQ("-9223372036854775808", appended("", std::numeric_limits<long long>::min()));
    EXPECT_EQ("18446744073709551615", appended("", std::numeric_limits<unsigned long long>::max()));
}

TEST_F(StlUtilitiesTest, AppendsDoublesWithoutZerosBehindThePoint) {
    EXPECT_EQ("1.5", appended("", 1.50, 4));
    EXPECT_EQ("2", appended("", 2.0, 4));
    EXPECT_EQ("100", appended("", 100.0, 2));
    EXPECT_EQ("100", appended("", 100.0, 0));
    EXPECT_EQ("x-0.125", appended("x", -0.125, 3));
    EXPECT_EQ("0.333333", appended("", 1.0 / 3.0, -1));
    EXPECT_EQ("nan", appended("", std::nan(""), 3));
    EXPECT_EQ("-inf", appended("", -std::numeric_limits<double>::infinity(), 3));
    EXPECT_EQ(309U, appended("", std::numeric_limits<double>::max(), 2).size());
}

std::string quoted(std::string text) {
    stl_string_quote_space(text);
    return text;
}

TEST_F(StlUtilitiesTest, QuoteSpaceQuotesOnlyBlanks) {
    EXPECT_EQ("plain\t", quoted("plain\t"));
    EXPECT_EQ("\"a b\"", quoted("a b"));
    EXPECT_EQ("a\\\"b", quoted("a\"b"));
    EXPECT_EQ("\"a \\\\ \\\" b\"", quoted("a \\ \" b"));
    EXPECT_EQ("", quoted(""));
}

TEST_F(StlUtilitiesTest, UnquoteUndoesQuoting) {
    for (const std::string text : {"", "plain", "a b", "a\"b", "\\", "\"", " ", "a \\ \" b", "\\\\\"\" x"}) {
        std::string s = quoted(text);
        EXPECT_TRUE(stl_string_unquote_space(s)) << text;
        EXPECT_EQ(text, s);
    }
}

TEST_F(StlUtilitiesTest, UnquoteTestsBlanksOnlyUpToTheFirstSpecialByte) {
    std::string s = "\"a\" b";
    EXPECT_TRUE(stl_string_unquote_space(s));
    EXPECT_EQ("a b", s);
}

struct BadQuote {
    const char* text;
    const char* report;
};

TEST_F(StlUtilitiesTest, UnquoteRefusesAndLeavesTheText) {
    const char* const lonely = "stl_string_unquote_space(): can't unquote a lonely backslash";
    const BadQuote cases[] = {
        {"a b", "stl_string_unquote_space(): found unquoted space"},
        {"a\\", lonely},
        {"a\\b", lonely},
        {"\\ ", lonely},
        {"\"a", "stl_string_unquote_space(): no closing quote found"},
        {"a b\"", "stl_string_unquote_space(): found unquoted space"},
    };
    for (const BadQuote& bad : cases) {
        std::string s = bad.text;
        EXPECT_FALSE(stl_string_unquote_space(s)) << bad.text;
        EXPECT_EQ(bad.text, s);
        EXPECT_EQ(Texts{bad.report}, trace_reports());
    }
}

}  // namespace
