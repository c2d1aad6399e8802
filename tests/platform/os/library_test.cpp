#include "os/library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

using Answer = int(int);

TEST(SharedLibraryTest, LoadsAndFindsAFunction) {
    os::SharedLibrary library;
    EXPECT_FALSE(library.is_loaded());
    ASSERT_TRUE(library.load(TEST_LIBRARY)) << library.error_text();
    EXPECT_TRUE(library.is_loaded());
    auto* const answer = library.function<Answer>("test_library_answer");
    ASSERT_NE(nullptr, answer);
    EXPECT_EQ(42, answer(41));
    EXPECT_TRUE(library.unload());
    EXPECT_FALSE(library.is_loaded());
    EXPECT_TRUE(library.unload());
}

TEST(SharedLibraryTest, TakesBackslashes) {
    std::string path = TEST_LIBRARY;
    std::replace(path.begin(), path.end(), '/', '\\');
    os::SharedLibrary library;
    EXPECT_TRUE(library.load(path)) << library.error_text();
}

TEST(SharedLibraryTest, AMissingLibraryIsNamed) {
    os::SharedLibrary library;
    EXPECT_FALSE(library.load("/no/such/library.so"));
    EXPECT_FALSE(library.is_loaded());
    EXPECT_NE(std::string::npos, library.error_text().find("/no/such/library.so"));
}

TEST(SharedLibraryTest, AMissingNameIsTold) {
    os::SharedLibrary library;
    EXPECT_EQ(nullptr, library.symbol("anything"));
    EXPECT_EQ("no library is loaded", library.error_text());
    ASSERT_TRUE(library.load(TEST_LIBRARY));
    EXPECT_EQ(nullptr, library.symbol("no_such_name"));
    EXPECT_NE(std::string::npos, library.error_text().find("no_such_name"));
}

TEST(SharedLibraryTest, KnowsWhereThisCodeLies) {
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/",
              os::code_directory());
}

TEST(SharedLibraryTest, MovingHandsTheLibraryOver) {
    os::SharedLibrary first;
    ASSERT_TRUE(first.load(TEST_LIBRARY));
    os::SharedLibrary second(std::move(first));
    EXPECT_NE(nullptr, second.symbol("test_library_answer"));
    os::SharedLibrary third;
    third = std::move(second);
    EXPECT_NE(nullptr, third.symbol("test_library_answer"));
}

}  // namespace
