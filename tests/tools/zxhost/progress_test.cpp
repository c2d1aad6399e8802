#include "progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace zxhost;
using std::chrono::milliseconds;

class ProgressTest : public ::testing::Test {
protected:
    Progress::Clock clock() {
        return [this] { return std::chrono::steady_clock::time_point(m_time); };
    }

    std::ostringstream m_out;
    milliseconds m_time{0};
};

TEST_F(ProgressTest, IsDueAFewTimesASecond) {
    Progress progress(m_out, ProgressStyle::Lines, clock());
    EXPECT_FALSE(progress.is_due());
    m_time += milliseconds(499);
    EXPECT_FALSE(progress.is_due());
    m_time += milliseconds(1);
    EXPECT_TRUE(progress.is_due());
    EXPECT_FALSE(progress.is_due());
}

TEST_F(ProgressTest, WritesLinesForFiles) {
    Progress progress(m_out, ProgressStyle::Lines, clock());
    progress.show("one");
    progress.show("two");
    progress.end();
    EXPECT_EQ(m_out.str(), "one\ntwo\n");
}

TEST_F(ProgressTest, WritesOverItselfOnATerminal) {
    Progress progress(m_out, ProgressStyle::InPlace, clock());
    progress.show("one");
    progress.show("two");
    progress.end();
    progress.end();
    EXPECT_EQ(m_out.str(), "\r\x1b[Kone\r\x1b[Ktwo\n");
}

TEST_F(ProgressTest, IsSilentWhenOff) {
    Progress progress(m_out, ProgressStyle::Off, clock());
    m_time += milliseconds(10000);
    EXPECT_FALSE(progress.is_due());
    progress.show("one");
    progress.end();
    EXPECT_EQ(m_out.str(), "");
}

}  // namespace
