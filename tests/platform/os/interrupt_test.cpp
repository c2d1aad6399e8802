#include "os/interrupt.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>

namespace {

std::atomic<int> first_ran{0};
std::atomic<int> second_ran{0};

void first() { ++first_ran; }
void second() { ++second_ran; }

class InterruptTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::signal(SIGINT, SIG_DFL);
        first_ran = second_ran = 0;
    }
    void TearDown() override { os::set_interrupt_handler(nullptr); }
};

TEST_F(InterruptTest, TheHandlerRunsEachTime) {
    EXPECT_EQ(os::set_interrupt_handler(first), nullptr);
    os::interrupt_this_process();
    os::interrupt_this_process();
    EXPECT_EQ(first_ran, 2);
}

TEST_F(InterruptTest, HandlersNest) {
    os::set_interrupt_handler(first);
    const os::InterruptHandler before = os::set_interrupt_handler(second);
    EXPECT_EQ(before, first);
    os::interrupt_this_process();
    EXPECT_EQ(os::set_interrupt_handler(before), second);
    os::interrupt_this_process();
    EXPECT_EQ(first_ran, 1);
    EXPECT_EQ(second_ran, 1);
}

TEST_F(InterruptTest, TheWishThatTheProgramEndsIsAnother) {
    EXPECT_EQ(os::set_end_handler(second), nullptr);
    os::set_interrupt_handler(first);
    os::interrupt_this_process();
    EXPECT_EQ(first_ran, 1);
    EXPECT_EQ(second_ran, 0);
    EXPECT_EQ(os::set_end_handler(nullptr), second);
}

using InterruptDeathTest = InterruptTest;

TEST_F(InterruptDeathTest, WithoutAHandlerItEndsTheProgram) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(os::interrupt_this_process(), "");
    EXPECT_DEATH(
        {
            os::set_interrupt_handler(first);
            os::set_interrupt_handler(nullptr);
            os::interrupt_this_process();
        },
        "");
}

}  // namespace
