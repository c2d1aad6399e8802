#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "log_lines.h"
#include "mtrace.h"
#include "temporary_directory.h"

namespace {

class TraceTest : public ::testing::Test {
protected:
    void SetUp() override { MTrace_SetFile(m_directory.path("trace.log").c_str()); }
    void TearDown() override {
        MTrace_SetMasterLevel(0);
        _MTrace_SetLevel("default", 0);
    }

    TemporaryDirectory m_directory;
};

TEST_F(TraceTest, StartsSilent) {
    EXPECT_FALSE(MTrace_TestMasterLevel(1));
    EXPECT_FALSE(_MTrace_TestLevel("default", 1));
    EXPECT_FALSE(_MTrace_TestLevel("unheard of", 1));
}

TEST_F(TraceTest, ALevelIsOnIfChannelAndMasterReachIt) {
    EXPECT_EQ(0, _MTrace_SetLevel("default", 5));
    EXPECT_FALSE(_MTrace_TestLevel("default", 1));
    EXPECT_EQ(0, MTrace_SetMasterLevel(3));
    EXPECT_TRUE(_MTrace_TestLevel("default", 3));
    EXPECT_FALSE(_MTrace_TestLevel("default", 4));
    EXPECT_FALSE(_MTrace_TestLevel("other", 1));
    EXPECT_TRUE(MTrace_TestMasterLevel(3));
    EXPECT_FALSE(MTrace_TestMasterLevel(4));
    EXPECT_EQ(5, _MTrace_SetLevel("default", 2));
    EXPECT_EQ(3, MTrace_SetMasterLevel(0));
}

TEST_F(TraceTest, ALineHoldsChannelLevelPlaceAndText) {
    _MTrace_Location("file.cpp", 7, "default", 3);
    _MTrace_Always("%s %d", "text", 5);
    _MTrace_Always("no place");
    EXPECT_EQ((std::vector<std::string>{"default:3 file.cpp(7): text 5", "no place"}),
              log_lines(m_directory.content("trace.log")));
}

TEST_F(TraceTest, LevelsMayChangeWhileOthersAsk) {
    std::atomic<bool> stop{false};
    std::thread asking([&stop] {
        while (!stop) {
            if (_MTrace_TestLevel("default", 2)) _MTrace_Always("on");
        }
    });
    for (unsigned i = 0; i < 200; ++i) {
        _MTrace_SetLevel("default", i % 3);
        MTrace_SetMasterLevel(i % 4);
    }
    stop = true;
    asking.join();
    EXPECT_EQ(1, _MTrace_SetLevel("default", 0));
}

}  // namespace
