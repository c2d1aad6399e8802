#include "mstr.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

namespace {

TEST(MStrTest, CopyAndCatAreBounded) {
    char target[6] = "x";
    EXPECT_EQ(1, MStrCopy(target, "12345", 6));
    EXPECT_STREQ("12345", target);
    EXPECT_EQ(0, MStrCopy(target, "abcdef", 4));
    EXPECT_STREQ("abc", target);
    EXPECT_EQ(0, MStrCopy(target, "z", 0));
    EXPECT_STREQ("abc", target);
    EXPECT_EQ(1, MStrCat(target, "de", 6));
    EXPECT_STREQ("abcde", target);
    EXPECT_EQ(0, MStrCat(target, "f", 6));
    EXPECT_STREQ("abcde", target);
    EXPECT_EQ(1, MStrCat(target, "", 6));
    EXPECT_EQ(0, MStrCat(target, "f", 5));
    EXPECT_EQ(0, MStrCat(target, "f", 0));
    EXPECT_STREQ("abcde", target);
}

TEST(MStrTest, ComparesBytesAsSigned) {
    EXPECT_EQ(0, MStrCmp("abc", "abc"));
    EXPECT_EQ(-1, MStrCmp("abc", "abd"));
    EXPECT_EQ(1, MStrCmp("abc", "ab"));
    EXPECT_EQ(-1, MStrCmp("\xE4", "a"));
    EXPECT_EQ(1, MStrCmp("a", "B"));
    EXPECT_EQ(-1, MStrICmp("a", "B"));
    EXPECT_EQ(0, MStrICmp("aBc", "AbC"));
    EXPECT_EQ(0, MStrNCmp("abc", "abd", 2));
    EXPECT_EQ(-1, MStrNCmp("abc", "abd", 3));
    EXPECT_EQ(0, MStrNCmp("a", "b", 0));
    EXPECT_EQ(0, MStrNICmp("ABx", "aby", 2));
    EXPECT_EQ(-1, MStrNICmp("ABx", "aby", 9));
}

TEST(MStrTest, CaseChangesInPlace) {
    char s[] = "aB1-\xE4";
    EXPECT_EQ(5U, MStrSwapCase(s));
    EXPECT_STREQ("Ab1-\xE4", s);
    MStrToUpper(s);
    EXPECT_STREQ("AB1-\xE4", s);
    MStrToLower(s);
    EXPECT_STREQ("ab1-\xE4", s);
    MStrToLower(nullptr);
    MStrToUpper(nullptr);
}

std::string stripped(std::string text) {
    MStrStrip(text.data());
    return text.c_str();
}

TEST(MStrTest, StripEndsAtTheFirstCommentOfAnyKind) {
    EXPECT_EQ("ab", stripped(" a\tb // c"));
    EXPECT_EQ("a", stripped("a ; b // c"));
    EXPECT_EQ("a", stripped("a /* b ; c"));
    EXPECT_EQ("a/b*/", stripped("a / b */"));
    EXPECT_EQ("", stripped(""));
}

TEST(MStrTest, ReversesAndPrints) {
    char s[] = "abcd";
    MStrReverse(s, 3);
    EXPECT_STREQ("cbad", s);
    MStrReverse(s, 0);
    EXPECT_STREQ("cbad", s);
    char digits[12];
    EXPECT_EQ(1U, MStrFromInt(0, digits));
    EXPECT_STREQ("0", digits);
    EXPECT_EQ(11U, MStrFromInt(INT_MIN, digits));
    EXPECT_STREQ("-2147483648", digits);
}

using Trim = std::size_t (*)(char*, std::size_t);

std::string trimmed(Trim trim, std::string text, std::size_t length = 0) {
    const std::size_t new_length = trim(text.data(), length);
    if (length == 0) {
        EXPECT_EQ(std::strlen(text.c_str()), new_length);
    }
    return {text.data(), new_length};
}

TEST(MStrTest, TrimsTheEnds) {
    EXPECT_EQ(" a b", trimmed(MStrTrimRight, " a b \t\n"));
    EXPECT_EQ("a b \t\n", trimmed(MStrTrimLeft, " a b \t\n"));
    EXPECT_EQ("a b", trimmed(MStrTrim, " a b \t\n"));
    for (const Trim trim : {MStrTrimRight, MStrTrimLeft, MStrTrim}) {
        EXPECT_EQ("", trimmed(trim, " \t "));
        EXPECT_EQ("", trimmed(trim, ""));
        EXPECT_EQ("a", trimmed(trim, "a"));
    }
    EXPECT_EQ("a", trimmed(MStrTrim, " a b", 3));
}

}  // namespace
