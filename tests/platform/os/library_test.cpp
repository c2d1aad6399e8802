#include "os/library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "os/path.h"
#include "os/program.h"
#include "temporary_directory.h"

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
    EXPECT_EQ(os::program_directory(), os::code_directory());
    EXPECT_TRUE(std::filesystem::exists(os::code_directory()));
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

// The first bytes of libraries for machines of another kind, each with what it is.
class ForeignLibraryTest : public testing::TestWithParam<std::pair<std::string, std::string>> {};

TEST_P(ForeignLibraryTest, IsToldFromWhatIsWanted) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("foreign.dll", GetParam().first + std::string(200, '\0'));
    os::SharedLibrary library;
    EXPECT_FALSE(library.load(path));
    EXPECT_EQ(
        0U, library.error_text().find(os::native_path(path) + " is " + GetParam().second + "; wanted is a "))
        << library.error_text();
    EXPECT_EQ(std::string::npos, library.error_text().find('\n'));
}

using namespace std::string_literals;

INSTANTIATE_TEST_SUITE_P(Kinds, ForeignLibraryTest,
                         testing::Values(std::pair("\x7F"
                                                   "ELF\1\1\1\0\0\0\0\0\0\0\0\0\3\0\3\0"s,
                                                   "a 32-bit x86 library for Linux"s),
                                         std::pair("\x7F"
                                                   "ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\xB7\0"s,
                                                   "a 64-bit ARM library for Linux"s),
                                         std::pair("MZ"s + std::string(58, '\0') + "\x40\0\0\0PE\0\0\x4C\1"s,
                                                   "a 32-bit x86 library for Windows"s),
                                         std::pair("Dear integrator"s, "no library"s)),
                         [](const auto& kind) { return "Kind" + std::to_string(kind.index); });

// A copy that lies alone lacks what lies beside the original.
TEST(SharedLibraryTest, AMissingDependencyIsNamed) {
    const std::filesystem::path original = NEEDY_LIBRARY;
    os::SharedLibrary library;
    ASSERT_TRUE(library.load(original.string())) << library.error_text();
    EXPECT_EQ(43, library.function<Answer>("test_needy_answer")(41));
    ASSERT_TRUE(library.unload());
    const TemporaryDirectory directory;
    const std::string copy = directory.path(original.filename().string());
    std::filesystem::copy_file(original, copy);
    EXPECT_FALSE(library.load(copy));
    const std::string needed = std::filesystem::path(TEST_LIBRARY).filename().string();
    EXPECT_NE(std::string::npos, library.error_text().find(needed)) << library.error_text();
}

}  // namespace
