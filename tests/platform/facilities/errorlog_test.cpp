#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "log_lines.h"
#include "merrlog.h"
#include "temporary_directory.h"

namespace {

class ErrorLogTest : public ::testing::Test {
protected:
    void SetUp() override { MErrLog_SetFile(m_directory.path("error.log").c_str()); }

    std::vector<std::string> lines() const { return log_lines(m_directory.content("error.log")); }

    TemporaryDirectory m_directory;
};

using Lines = std::vector<std::string>;

TEST_F(ErrorLogTest, ALineHoldsPlaceAndText) {
    _MErrLog_Location(0, "some/source", 12);
    _MErrLog_Add("%s failed: %d\n", "Operation()", 5);
    EXPECT_EQ(Lines{"some/source(12): Operation() failed: 5"}, lines());
}

TEST_F(ErrorLogTest, APlaceIsGoodForOneLine) {
    _MErrLog_Location(0, "some/source", 12);
    _MErrLog_Add("first");
    _MErrLog_Add("second");
    EXPECT_EQ((Lines{"some/source(12): first", "second"}), lines());
}

TEST_F(ErrorLogTest, LongTextsAreWhole) {
    const std::string text(100000, 'x');
    _MErrLog_Add("%s", text.c_str());
    EXPECT_EQ(Lines{text}, lines());
}

TEST_F(ErrorLogTest, OfAPlaceTheFirst255CharactersAreKept) {
    _MErrLog_Location(0, std::string(300, 's').c_str(), 1);
    _MErrLog_Add("text");
    EXPECT_EQ(Lines{std::string(255, 's') + "(1): text"}, lines());
}

TEST_F(ErrorLogTest, ThreadsKeepTheirPlacesApart) {
    constexpr int count = 200;
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < count; ++i) {
                _MErrLog_Location(0, "thread", t);
                _MErrLog_Add("text %d", t);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    int seen[3] = {};
    for (const std::string& line : lines()) {
        for (int t = 0; t < 3; ++t) {
            const std::string number = std::to_string(t);
            seen[t] += line == "thread(" + number + "): text " + number;
        }
    }
    for (const int n : seen) EXPECT_EQ(count, n);
}

TEST_F(ErrorLogTest, ALogThatCannotBeWrittenIsNobodysProblem) {
    m_directory.file("plain", "x");
    MErrLog_SetFile(m_directory.path("plain/below.log").c_str());
    _MErrLog_Add("lost");
    EXPECT_EQ("x", m_directory.content("plain"));
}

}  // namespace
