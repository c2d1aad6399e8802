#include "os/threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <latch>

namespace {

unsigned wait_for_latch(void* latch) {
    static_cast<std::latch*>(latch)->wait();
    return 0x80000001U;
}

class ThreadsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(os::threads().start(wait_for_latch, &release, handle, id)); }
    void TearDown() override { EXPECT_TRUE(os::threads().close(handle)); }

    std::latch release{1};
    os::ThreadHandle handle = os::no_thread;
    std::uint32_t id = 0;
};

TEST_F(ThreadsTest, SeveralMayWaitForOneThread) {
    const auto wait = [this] { return os::threads().wait(handle); };
    auto first = std::async(std::launch::async, wait);
    auto second = std::async(std::launch::async, wait);
    release.count_down();
    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
    EXPECT_TRUE(wait());
    unsigned code = 0;
    EXPECT_TRUE(os::threads().exit_code(handle, code));
    EXPECT_EQ(0x80000001U, code);
}

TEST_F(ThreadsTest, ThePriorityMayBeSetBeforeAndAfterTheEnd) {
    EXPECT_TRUE(os::threads().set_normal_priority(handle));
    release.count_down();
    EXPECT_TRUE(os::threads().wait(handle));
    EXPECT_TRUE(os::threads().set_normal_priority(handle));
}

TEST_F(ThreadsTest, ACopyIsAHandleOfItsOwn) {
    os::ThreadHandle copy = os::no_thread;
    ASSERT_TRUE(os::threads().duplicate(handle, copy));
    release.count_down();
    EXPECT_TRUE(os::threads().wait(copy));
    EXPECT_TRUE(os::threads().close(copy));
    unsigned code = 0;
    EXPECT_TRUE(os::threads().exit_code(handle, code));
}

TEST_F(ThreadsTest, AThreadThatNobodyWaitedForHasNoExitCode) {
    unsigned code = 5;
    EXPECT_FALSE(os::threads().exit_code(handle, code));
    EXPECT_EQ(5U, code);
    release.count_down();
    EXPECT_TRUE(os::threads().wait(handle));
}

// Outlives the thread that counts here, whose end nobody waits for.
std::atomic<int> runs{0};

unsigned count_run(void*) {
    ++runs;
    runs.notify_all();
    return 0;
}

TEST_F(ThreadsTest, AThreadGoesOnWithoutAHandle) {
    release.count_down();
    EXPECT_TRUE(os::threads().wait(handle));
    const int before = runs;
    os::ThreadHandle other = os::no_thread;
    std::uint32_t other_id = 0;
    ASSERT_TRUE(os::threads().start(count_run, nullptr, other, other_id));
    EXPECT_NE(id, other_id);
    EXPECT_NE(0U, other_id);
    EXPECT_TRUE(os::threads().close(other));
    runs.wait(before);
    EXPECT_EQ(before + 1, runs);
}

}  // namespace
