// What the code under test reported since the last look.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "recording_facilities.h"

using Texts = std::vector<std::string>;

// Every test of the library must have looked at all that was reported.
class ReportsTest : public ::testing::Test {
protected:
    void SetUp() override { recording::reset(); }

    void TearDown() override {
        EXPECT_EQ(Texts{}, trace_reports());
        EXPECT_EQ(Texts{}, log_reports());
        EXPECT_EQ(0U, recording::open_contexts());
    }

    // The reports to the error trace that nobody has looked at, innermost first.
    Texts trace_reports() { return unseen(recording::error_trace(), m_trace_seen); }
    Texts log_reports() { return unseen(recording::error_log(), m_log_seen); }

private:
    static Texts unseen(const Texts& all, std::size_t& seen) {
        const Texts texts(all.begin() + static_cast<std::ptrdiff_t>(seen), all.end());
        seen = all.size();
        return texts;
    }

    std::size_t m_trace_seen = 0;
    std::size_t m_log_seen = 0;
};
