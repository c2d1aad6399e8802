#include "rotating_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "environment_variable.h"
#include "temporary_directory.h"

namespace {

class RotatingLogTest : public ::testing::Test {
protected:
    // A line of the log without the time and the thread before it.
    static std::string text_of(const std::string& line) {
        static const std::regex head(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[\d+\] )");
        std::smatch match;
        EXPECT_TRUE(std::regex_search(line, match, head, std::regex_constants::match_continuous)) << line;
        return match.suffix();
    }

    TemporaryDirectory m_directory;
};

TEST_F(RotatingLogTest, WritesALineAtOnce) {
    RotatingLog log("ZX_TEST_NO_LOG", "x.log", 1 << 20);
    log.set_file(m_directory.path("my.log"));
    log.write("a text with {} in it");
    EXPECT_EQ("a text with {} in it\n", text_of(m_directory.content("my.log")));
}

TEST_F(RotatingLogTest, ATextIsOneLine) {
    RotatingLog log("ZX_TEST_NO_LOG", "x.log", 1 << 20);
    log.set_file(m_directory.path("my.log"));
    log.write("a\r\nb\n\n");
    EXPECT_EQ("a\\r\\nb\n", text_of(m_directory.content("my.log")));
}

TEST_F(RotatingLogTest, TheEnvironmentNamesTheFile) {
    const EnvironmentVariable variable("ZX_TEST_LOG", m_directory.path("named.log").c_str());
    RotatingLog log("ZX_TEST_LOG", "x.log", 1 << 20);
    log.write("text");
    EXPECT_EQ("text\n", text_of(m_directory.content("named.log")));
}

TEST_F(RotatingLogTest, ElseItLiesInTheStateDirectory) {
    // Each system has its own name for it.
    const std::string state = m_directory.path("state");
    const EnvironmentVariable here("XDG_STATE_HOME", state.c_str());
    const EnvironmentVariable there("LOCALAPPDATA", state.c_str());
    RotatingLog log("ZX_TEST_NO_LOG", "x.log", 1 << 20);
    log.write("text");
    EXPECT_EQ("text\n", text_of(m_directory.content("state/m2zendrix/x.log")));
}

TEST_F(RotatingLogTest, KeepsThreeOldFiles) {
    RotatingLog log("ZX_TEST_NO_LOG", "x.log", 100);
    log.set_file(m_directory.path("my.log"));
    for (int i = 0; i < 9; ++i) log.write(std::string(60, 'x') + std::to_string(i));
    for (const char* const name : {"my.log", "my.1.log", "my.2.log", "my.3.log"}) {
        EXPECT_TRUE(std::filesystem::exists(m_directory.path(name))) << name;
    }
    EXPECT_FALSE(std::filesystem::exists(m_directory.path("my.4.log")));
    EXPECT_NE(std::string::npos, m_directory.content("my.log").find("x8"));
    EXPECT_NE(std::string::npos, m_directory.content("my.3.log").find("x5"));
}

TEST_F(RotatingLogTest, AFileThatCannotBeWrittenIsNobodysProblem) {
    RotatingLog log("ZX_TEST_NO_LOG", "x.log", 1 << 20);
    m_directory.file("plain", "x");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    log.set_file(m_directory.path("plain/below.log"));
    log.write("lost");
    EXPECT_EQ("", testing::internal::GetCapturedStdout());
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    log.set_file(m_directory.path("my.log"));
    log.write("kept");
    EXPECT_EQ("kept\n", text_of(m_directory.content("my.log")));
}

}  // namespace
