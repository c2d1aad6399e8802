#include "os/directories.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "temporary_directory.h"

namespace {

TEST(DirectoriesTest, MakesAllThatIsMissing) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(os::make_directories(directory.path() + "\\a/b\\c"));
    EXPECT_TRUE(std::filesystem::is_directory(directory.path("a/b/c")));
    EXPECT_TRUE(os::make_directories(directory.path("a/b/c/")));
    directory.file("plain", "x");
    EXPECT_FALSE(os::make_directories(directory.path("plain")));
    EXPECT_FALSE(os::make_directories(directory.path("plain/below")));
}

TEST(DirectoriesTest, TellsTheCurrentDirectory) {
    const TemporaryDirectory directory;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(directory.path());
    std::string current;
    EXPECT_TRUE(os::current_directory(current));
    std::filesystem::current_path(before);
    EXPECT_TRUE(std::filesystem::equivalent(directory.path(), current)) << current;
    EXPECT_FALSE(current.ends_with('/') || current.ends_with('\\')) << current;
}

TEST(DirectoriesTest, TheTemporaryDirectoryIsThere) {
    const std::string temporary = os::temporary_directory();
    EXPECT_TRUE(std::filesystem::is_directory(temporary)) << temporary;
    EXPECT_TRUE(temporary.ends_with('/') || temporary.ends_with('\\')) << temporary;
}

}  // namespace
