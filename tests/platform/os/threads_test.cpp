#include "os/threads.h"

#include <gtest/gtest.h>

#include <future>

#include "gate.h"
#include "os/library.h"
#include "process_resources.h"

namespace {

unsigned wait_for_gate(void* gate) {
    static_cast<Gate*>(gate)->wait();
    return 0x80000001U;
}

class ThreadsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(os::threads().start(wait_for_gate, &release, handle, id)); }
    void TearDown() override { EXPECT_TRUE(os::threads().close(handle)); }

    Gate release;
    os::ThreadHandle handle = os::no_thread;
    std::uint32_t id = 0;
};

TEST_F(ThreadsTest, SeveralMayWaitForOneThread) {
    const auto wait = [this] { return os::threads().wait(handle); };
    auto first = std::async(std::launch::async, wait);
    auto second = std::async(std::launch::async, wait);
    release.open();
    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
    EXPECT_TRUE(wait());
    unsigned code = 0;
    EXPECT_TRUE(os::threads().exit_code(handle, code));
    EXPECT_EQ(0x80000001U, code);
}

TEST_F(ThreadsTest, ThePriorityMayBeSetBeforeAndAfterTheEnd) {
    EXPECT_TRUE(os::threads().set_normal_priority(handle));
    release.open();
    EXPECT_TRUE(os::threads().wait(handle));
    EXPECT_TRUE(os::threads().set_normal_priority(handle));
}

TEST_F(ThreadsTest, ACopyIsAHandleOfItsOwn) {
    os::ThreadHandle copy = os::no_thread;
    ASSERT_TRUE(os::threads().duplicate(handle, copy));
    release.open();
    EXPECT_TRUE(os::threads().wait(copy));
    EXPECT_TRUE(os::threads().close(copy));
    unsigned code = 0;
    EXPECT_TRUE(os::threads().exit_code(handle, code));
}

TEST_F(ThreadsTest, AThreadThatNobodyWaitedForHasNoExitCode) {
    unsigned code = 5;
    EXPECT_FALSE(os::threads().exit_code(handle, code));
    EXPECT_EQ(5U, code);
    release.open();
    EXPECT_TRUE(os::threads().wait(handle));
}

// Outlives the thread that opens it, whose end nobody waits for.
Gate ran;

unsigned tell_run(void*) {
    ran.open();
    return 0;
}

TEST_F(ThreadsTest, AThreadGoesOnWithoutAHandle) {
    release.open();
    EXPECT_TRUE(os::threads().wait(handle));
    os::ThreadHandle other = os::no_thread;
    std::uint32_t other_id = 0;
    ASSERT_TRUE(os::threads().start(tell_run, nullptr, other, other_id));
    EXPECT_NE(id, other_id);
    EXPECT_NE(0U, other_id);
    EXPECT_TRUE(os::threads().close(other));
    ran.wait();
}

// A library with a thread that its host doesn't wait for.
class LeftThread {
public:
    LeftThread() {
        EXPECT_TRUE(m_library.load(THREAD_LIBRARY)) << m_library.error_text();
        auto* const start_thread = m_library.function<Start>("test_library_start");
        EXPECT_TRUE(start_thread && start_thread(stay, go, this));
        m_come.wait();
    }

    void unload() { EXPECT_TRUE(m_library.unload()) << m_library.error_text(); }
    bool is_gone() const { return m_gone.is_open(); }
    // With its library, and then itself: a process that ends while a library goes may fall over that.
    void wait_until_gone() {
        m_leave.open();
        m_gone.wait();
        EXPECT_TRUE(test_support::threads_sink_to(m_threads_before));
    }

private:
    using Start = bool(void (*)(void*), void (*)(void*), void*);

    static void stay(void* object) {
        auto* const left = static_cast<LeftThread*>(object);
        left->m_come.open();
        left->m_leave.wait();
    }
    static void go(void* object) { static_cast<LeftThread*>(object)->m_gone.open(); }

    const std::ptrdiff_t m_threads_before = test_support::thread_count();
    os::SharedLibrary m_library;
    Gate m_come;
    Gate m_leave;
    Gate m_gone;
};

TEST(ThreadsInALibraryTest, TheLibraryStaysUntilItsThreadHasEnded) {
    LeftThread left;
    left.unload();
    EXPECT_FALSE(left.is_gone());
    left.wait_until_gone();
}

// Nothing of the system's is used up: there are 1024 of the keys that let a library go.
TEST(ThreadsInALibraryTest, ComesAndGoesAnyNumberOfTimes) {
    for (int round = 0; round < 1100; ++round) {
        LeftThread left;
        left.unload();
        left.wait_until_gone();
    }
}

}  // namespace
