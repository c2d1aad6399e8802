#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "log_lines.h"
#include "merrlog.h"
#include "merrtrace.h"
#include "temporary_directory.h"

namespace {

class ErrorTraceTest : public ::testing::Test {
protected:
    void SetUp() override { MErrLog_SetFile(m_directory.path("error.log").c_str()); }

    std::vector<std::string> lines() const { return log_lines(m_directory.content("error.log")); }

    TemporaryDirectory m_directory;
};

using Lines = std::vector<std::string>;

void add(const char* text) {
    _MErrTrace_Location(0, "s", 1);
    _MErrTrace_Add("%s", text);
}

void dump(const char* text) {
    _MErrTrace_Location(0, "d", 2);
    _MErrTrace_DumpContextToMErrLog("%s", text);
}

TEST_F(ErrorTraceTest, ADumpWritesTheContextAndEmptiesIt) {
    MErrTrace_BeginContext();
    add("inner");
    add("outer");
    dump("end");
    dump("again");
    MErrTrace_EndContext();
    EXPECT_EQ((Lines{"s(1): inner", "s(1): outer", "d(2): end", "d(2): again"}), lines());
}

TEST_F(ErrorTraceTest, ContextsNest) {
    MErrTrace_BeginContext();
    add("outer");
    MErrTrace_BeginContext();
    add("dropped at the end");
    MErrTrace_EndContext();
    MErrTrace_BeginContext();
    add("inner");
    dump("inner end");
    MErrTrace_EndContext();
    dump("outer end");
    MErrTrace_EndContext();
    EXPECT_EQ((Lines{"s(1): inner", "d(2): inner end", "s(1): outer", "d(2): outer end"}), lines());
}

TEST_F(ErrorTraceTest, ClearDropsAndLeavesOpen) {
    MErrTrace_BeginContext();
    add("cleared");
    MErrTrace_ClearContext();
    add("kept");
    dump("end");
    MErrTrace_EndContext();
    EXPECT_EQ((Lines{"s(1): kept", "d(2): end"}), lines());
}

TEST_F(ErrorTraceTest, WithoutAContextRecordsAreDropped) {
    add("dropped");
    dump("end");
    MErrTrace_EndContext();
    MErrTrace_ClearContext();
    EXPECT_EQ(Lines{"d(2): end"}, lines());
}

TEST_F(ErrorTraceTest, EachThreadHasItsOwnContexts) {
    MErrTrace_BeginContext();
    add("here");
    std::thread([] {
        add("dropped");
        MErrTrace_BeginContext();
        add("there");
        dump("there end");
        MErrTrace_EndContext();
    }).join();
    dump("end");
    MErrTrace_EndContext();
    EXPECT_EQ((Lines{"s(1): there", "d(2): there end", "s(1): here", "d(2): end"}), lines());
}

}  // namespace
