#include <gtest/gtest.h>

#include "rotating_log.h"
#include "temporary_directory.h"

namespace {

TEST(RotatingLogPosix, AFullDiskIsNobodysProblem) {
    const TemporaryDirectory directory;
    RotatingLog log("ZX_TEST_NO_LOG", "x.log", 1 << 20);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    log.set_file("/dev/full");
    log.write("lost");
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    log.set_file(directory.path("my.log"));
    log.write("kept");
    EXPECT_NE(std::string::npos, directory.content("my.log").find("kept\n"));
}

}  // namespace
