#include "os/program.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "os/path.h"

namespace {

TEST(ProgramTest, TheDirectoryHoldsTheProgram) {
    const std::string directory = os::program_directory();
    ASSERT_TRUE(directory.ends_with(os::native_separator())) << directory;
    bool found = false;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        found = found || entry.path().stem().string() == "os_program_test";
    }
    EXPECT_TRUE(found) << directory;
}

TEST(ProgramTest, ALibrarysFileHasItsNameInIt) {
    const std::string file = os::library_file_name("m2zendrix");
    EXPECT_NE(file.npos, file.find("m2zendrix"));
    EXPECT_NE(file.npos, file.find('.'));
}

}  // namespace
