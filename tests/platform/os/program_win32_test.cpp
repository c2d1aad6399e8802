#include <gtest/gtest.h>

#include "os/program.h"

namespace {

TEST(ProgramTestWin32, ALibrarysFileName) { EXPECT_EQ("m2zendrix.dll", os::library_file_name("m2zendrix")); }

}  // namespace
