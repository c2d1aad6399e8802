#include "errtrace.h"

#include <thread>

#include "reports.h"

namespace {

using ErrTraceTest = ReportsTest;

TEST_F(ErrTraceTest, DumpWritesTheRecordsAndThenTheMessage) {
    MErrTraceContext context("some/source");
    MERRTRACE_REPORT("inner/source", "inner: %d", 1);
    MERRTRACE_REPORT("outer/source", "outer");
    context.DumpToMErrLog(77, "%s() failed", "Operation");
    EXPECT_EQ((Texts{"inner: 1", "outer", "Operation() failed"}), log_reports());
    EXPECT_EQ((Texts{"inner: 1", "outer"}), trace_reports());
    const auto places = recording::error_log_places();
    EXPECT_EQ("inner/source", places.at(0).source);
    EXPECT_EQ("some/source", places.at(2).source);
    EXPECT_EQ(77, places.at(2).line);
}

TEST_F(ErrTraceTest, DumpEmptiesTheContextButLeavesItOpen) {
    MErrTraceContext context("some/source");
    MERRTRACE_REPORT("s", "first");
    context.DumpToMErrLog(1, "one");
    MERRTRACE_REPORT("s", "second");
    context.DumpToMErrLog(2, "two");
    EXPECT_EQ((Texts{"first", "one", "second", "two"}), log_reports());
    trace_reports();
}

TEST_F(ErrTraceTest, TheEndOfTheScopeDropsWhatWasNotDumped) {
    MErrTraceContext outer("some/source");
    {
        MErrTraceContext inner("some/source");
        MERRTRACE_REPORT("s", "dropped");
        EXPECT_EQ(2U, recording::open_contexts());
    }
    EXPECT_EQ(1U, recording::open_contexts());
    outer.DumpToMErrLog(1, "end");
    EXPECT_EQ(Texts{"end"}, log_reports());
    EXPECT_EQ(Texts{"dropped"}, trace_reports());
}

TEST_F(ErrTraceTest, AMessageOf255CharactersFits) {
    MErrTraceContext context("s");
    context.DumpToMErrLog(1, "%s", std::string(255, 'x').c_str());
    EXPECT_EQ(Texts{std::string(255, 'x')}, log_reports());
}

TEST_F(ErrTraceTest, ALongerMessageIsCutAndReported) {
    MErrTraceContext context("s");
    context.DumpToMErrLog(1, "%s", std::string(256, 'x').c_str());
    EXPECT_EQ((Texts{"MErrTraceContext::DumpToMErrLog(): output string too long !", std::string(255, 'x')}),
              log_reports());
}

TEST_F(ErrTraceTest, ContextsOfTwoThreadsDoNotMix) {
    MErrTraceContext here("s");
    MERRTRACE_REPORT("s", "here");
    std::thread([] {
        MErrTraceContext there("s");
        there.DumpToMErrLog(1, "there");
    }).join();
    EXPECT_EQ(Texts{"there"}, log_reports());
    here.DumpToMErrLog(1, "end");
    EXPECT_EQ((Texts{"here", "end"}), log_reports());
    trace_reports();
}

TEST_F(ErrTraceTest, ALogReportKeepsItsPlace) {
    MERRLOG_REPORT("my/source", "%s", "text");
    const int line = __LINE__ - 1;
    EXPECT_EQ(Texts{"text"}, log_reports());
    EXPECT_EQ("my/source", recording::error_log_places().front().source);
    EXPECT_EQ(line, recording::error_log_places().front().line);
}

}  // namespace
