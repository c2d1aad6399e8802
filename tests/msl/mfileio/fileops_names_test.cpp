#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "fileops.h"

namespace {

std::string text_of(const char* text) { return text ? text : "(null)"; }

std::string dirname_of(const char* path) {
    char target[100] = "untouched";
    const char* const result = file_dirname(path, target);
    EXPECT_TRUE(result == target || result == nullptr);
    return (result ? "" : "null:") + std::string(target);
}

TEST(FileNamesTest, DirnameEndsInABackslash) {
    EXPECT_EQ("a/b\\", dirname_of("a/b/c"));
    EXPECT_EQ("a\\", dirname_of("a\\b"));
    EXPECT_EQ("\\", dirname_of("/abc"));
    EXPECT_EQ("a/\\", dirname_of("a//b"));
    EXPECT_EQ("a/b\\", dirname_of("a/b/"));
    EXPECT_EQ("null:untouched", dirname_of("abc"));
    EXPECT_EQ("null:untouched", dirname_of(""));
}

TEST(FileNamesTest, BasenameIsTheLastPart) {
    EXPECT_STREQ("abc", file_basename("abc"));
    EXPECT_STREQ("c", file_basename("a\\b/c"));
    EXPECT_STREQ("", file_basename("a/"));
    EXPECT_EQ(nullptr, file_basename(""));
}

TEST(FileNamesTest, LastPartNeedsASeparator) {
    EXPECT_EQ("(null)", text_of(file_last_part("abc")));
    EXPECT_EQ("c", text_of(file_last_part("a\\b/c")));
    EXPECT_EQ("", text_of(file_last_part("a/")));
}

TEST(FileNamesTest, AbsolutePathsBeginWithASeparatorOrADrive) {
    for (const char* const path : {"/", "\\a", "c:", "Z:\\a"}) EXPECT_TRUE(file_is_absolute(path)) << path;
    for (const char* const path : {"", "a/b", "1:", ":", "cc:", "."})
        EXPECT_FALSE(file_is_absolute(path)) << path;
}

std::string first_of(const char* path) {
    char target[100];
    char in_place[100];
    std::strcpy(in_place, path);
    const std::string copied = text_of(file_first_part(path, target));
    EXPECT_EQ(copied, text_of(file_first_part(in_place)));
    return copied;
}

TEST(FileNamesTest, FirstPartIsTheRootOrWhatStandsBeforeASeparator) {
    EXPECT_EQ("\\", first_of("\\abc"));
    EXPECT_EQ("/", first_of("/"));
    EXPECT_EQ("a", first_of("a/b\\c"));
    EXPECT_EQ("(null)", first_of("abc"));
    EXPECT_EQ("(null)", first_of(""));
}

std::string in_place(const std::function<char*(char*)>& function, const char* path) {
    char buffer[100];
    std::strcpy(buffer, path);
    const char* const result = function(buffer);
    EXPECT_TRUE(result == buffer || result == nullptr);
    return text_of(result);
}

TEST(FileNamesTest, CutLastTakesThePartAndTheSeparatorBeforeIt) {
    EXPECT_EQ("a", in_place(file_cut_last, "a\\b\\"));
    EXPECT_EQ("a/b", in_place(file_cut_last, "a/b/c"));
    EXPECT_EQ("", in_place(file_cut_last, "\\a"));
    EXPECT_EQ("(null)", in_place(file_cut_last, "a"));
    EXPECT_EQ("(null)", in_place(file_cut_last, "a\\"));
    EXPECT_EQ("(null)", in_place(file_cut_last, ""));
}

TEST(FileNamesTest, ExtensionIsOfTheLastPart) {
    EXPECT_EQ(".gz", text_of(file_extension("a.tar.gz")));
    EXPECT_EQ("(null)", text_of(file_extension("a.b\\c")));
    EXPECT_EQ(".ini", text_of(file_extension("a.b/c.ini")));
    EXPECT_EQ(".", text_of(file_extension("a.")));
}

TEST(FileNamesTest, Backslashes) {
    char target[20];
    EXPECT_STREQ("\\a\\b\\c", file_backslashes("/a\\b/c", target));
    EXPECT_EQ("a\\b", in_place([](char* path) { return file_backslashes(path); }, "a/b"));
}

std::string joined(const char* path, const char* relative) {
    return in_place([relative](char* buffer) { return file_join(buffer, relative); }, path);
}

TEST(FileNamesTest, JoinResolvesDotsButNotInTheLastPart) {
    EXPECT_EQ("a\\c", joined("a\\b", "..\\c"));
    EXPECT_EQ("a\\b\\c\\..", joined("a\\b", "c\\.."));
    EXPECT_EQ("a\\b\\c", joined("a\\b\\", ".\\c"));
    EXPECT_EQ("a/b\\c\\d", joined("a/b/", "c/d"));
    EXPECT_EQ("a\\.", joined("a", "."));
    EXPECT_EQ("a\\b", joined("a", "b/"));
    EXPECT_EQ("b", joined("", "b"));
    EXPECT_EQ("\\b/../c", joined("\\", "b/../c"));
    EXPECT_EQ("a\\b\\\\c", joined("a", "b//c"));
    EXPECT_EQ("a", joined("a\\", ""));
}

TEST(FileNamesTest, JoinRefusesTheAbsoluteAndTheTooHigh) {
    EXPECT_EQ("(null)", joined("a", "/b"));
    EXPECT_EQ("(null)", joined("a", "c:b"));
    EXPECT_EQ("(null)", joined("a", "../b"));
    EXPECT_EQ("(null)", joined("a/b", "../../c"));
}

std::string relative(const char* from, const char* to) {
    char target[100];
    const std::string way = text_of(file_relative_path(from, to, target));
    EXPECT_EQ(way, text_of(file_relative_path(from, to, nullptr)));
    return way;
}

TEST(FileNamesTest, RelativePathGoesUpAndDown) {
    EXPECT_EQ("c", relative("/a/b", "/a/c"));
    EXPECT_EQ("..\\x\\y", relative("/a/b/c", "/a/x/y"));
    EXPECT_EQ("..\\..\\x", relative("\\a\\b\\c", "\\x"));
    EXPECT_EQ("b", relative("/a/b", "/a/b"));
    EXPECT_EQ("b\\c", relative("/a", "/b/c"));
    EXPECT_EQ("x", relative("/a/b", "\\a\\x"));
    EXPECT_EQ("..\\A\\x", relative("/a/b", "/A/x"));
    EXPECT_EQ("(null)", relative("a/b", "/a"));
    EXPECT_EQ("(null)", relative("/a/b", "a"));
}

TEST(FileNamesTest, AWayTooLongForTheOwnBufferIsNone) {
    const std::string to = "/" + std::string(300, 'x');
    EXPECT_EQ(nullptr, file_relative_path("/a", to.c_str(), nullptr));
    char target[400];
    EXPECT_STREQ(to.c_str() + 1, file_relative_path("/a", to.c_str(), target));
}

}  // namespace
