#include <gtest/gtest.h>

#include "os/program.h"

namespace {

TEST(ProgramTestPosix, ALibrarysFileName) {
    EXPECT_EQ("libm2zendrix.so", os::library_file_name("m2zendrix"));
}

}  // namespace
