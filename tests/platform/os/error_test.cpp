#include "os/error.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

namespace {

bool is(std::errc kind) { return std::error_code(os::last_error(), std::system_category()) == kind; }

TEST(OsErrorTest, AStandInOfTheSystemFailsLikeIt) {
    os::set_last_error(static_cast<int>(std::errc::no_such_file_or_directory));
    EXPECT_EQ(static_cast<int>(std::errc::no_such_file_or_directory), os::last_error());
    EXPECT_TRUE(is(std::errc::no_such_file_or_directory)) << "both systems use 2 for it";
}

// Nothing is called between setting and asking, as that might change the number, too.
TEST(OsErrorTest, EachThreadHasItsOwn) {
    std::atomic<bool> mine = false;
    std::atomic<bool> theirs = false;
    std::thread other([&] {
        while (!mine) continue;
        os::set_last_error(5);
        theirs = true;
    });
    os::set_last_error(2);
    mine = true;
    while (!theirs) continue;
    const int error = os::last_error();
    other.join();
    EXPECT_EQ(2, error);
}

TEST(OsErrorTest, ANumberHasWordsInOneLine) {
    for (const int error : {2, 5, 123456789}) {
        const std::string text = os::error_text(error);
        EXPECT_FALSE(text.empty()) << error;
        EXPECT_EQ(text.npos, text.find_first_of("\r\n")) << text;
        EXPECT_FALSE(text.ends_with('.') || text.ends_with(' ')) << text;
    }
    EXPECT_NE(os::error_text(2), os::error_text(5));
    EXPECT_EQ("Unknown error 123456789", os::error_text(123456789));
}

TEST(OsErrorTest, TheCLibraryHasItsOwnNumbers) {
    errno = ENOENT;
    EXPECT_EQ("No such file or directory", os::errno_text());
    errno = ENOMEM;
    EXPECT_EQ(std::generic_category().message(ENOMEM), os::errno_text());
}

}  // namespace
