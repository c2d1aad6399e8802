#include "mthread.h"

#include <atomic>
#include <future>
#include <set>
#include <thread>
#include <type_traits>

#include "faulty_threads.h"
#include "gate.h"
#include "reports.h"

namespace {

unsigned give_back(void* argument) { return *static_cast<unsigned*>(argument); }

unsigned wait_for_gate(void* gate) {
    static_cast<Gate*>(gate)->wait();
    return 7;
}

class MThreadTest : public ReportsTest {
protected:
    void TearDown() override {
        EXPECT_EQ(0, threads.stray_calls());
        EXPECT_EQ(0U, threads.open_handles());
        ReportsTest::TearDown();
    }

    std::int32_t create() { return MThread_Create(give_back, &code); }

    // After a failure that left the thread on the list.
    void clean_up(std::int32_t id) { EXPECT_TRUE(MThread_Join(id, nullptr)); }

    FaultyThreads threads;
    unsigned code = 42;
};

// Creation

TEST_F(MThreadTest, TheFunctionsResultIsTheExitCode) {
    code = 0xFFFFFFFEU;
    const std::int32_t id = create();
    ASSERT_NE(-1, id);
    unsigned exit_code = 0;
    EXPECT_TRUE(MThread_Join(id, &exit_code));
    EXPECT_EQ(0xFFFFFFFEU, exit_code);
    EXPECT_EQ(1, threads.calls("set_normal_priority"));
}

TEST_F(MThreadTest, IdsDiffer) {
    std::set<std::int32_t> ids;
    for (int i = 0; i < 100; ++i) ids.insert(create());
    EXPECT_EQ(100U, ids.size());
    EXPECT_FALSE(ids.contains(0));
    EXPECT_FALSE(ids.contains(-1));
    EXPECT_EQ(100U, threads.open_handles());
    for (const std::int32_t id : ids) EXPECT_TRUE(MThread_Join(id, nullptr));
}

TEST_F(MThreadTest, AThreadThatCannotBeStartedIsReported) {
    threads.fail("start", EAGAIN);
    EXPECT_EQ(-1, create());
    EXPECT_EQ((Texts{"MThread_Create(): failed to create thread: 11"}), trace_reports());
}

TEST_F(MThreadTest, AThreadOfAnotherPriorityCountsAsCreated) {
    threads.fail("set_normal_priority", EPERM);
    const std::int32_t id = create();
    EXPECT_EQ((Texts{"MThread_Create(): failed to set thread priority: 1"}), log_reports());
    unsigned exit_code = 0;
    EXPECT_TRUE(MThread_Join(id, &exit_code));
    EXPECT_EQ(42U, exit_code);
}

TEST_F(MThreadTest, AThreadMayEndBeforeItIsListed) {
    threads.on_start([this](os::ThreadHandle handle) { EXPECT_TRUE(threads.real().wait(handle)); });
    const std::int32_t id = create();
    unsigned exit_code = 0;
    EXPECT_TRUE(MThread_Join(id, &exit_code));
    EXPECT_EQ(42U, exit_code);
}

TEST_F(MThreadTest, AnIdThatComesAgainNamesTheLaterThread) {
    threads.give_id(5);
    os::ThreadHandle first = os::no_thread;
    threads.on_start([&](os::ThreadHandle handle) { first = handle; });
    EXPECT_EQ(5, create());
    threads.on_start(nullptr);
    unsigned other = 43;
    EXPECT_EQ(5, MThread_Create(give_back, &other));
    unsigned exit_code = 0;
    EXPECT_TRUE(MThread_Join(5, &exit_code));
    EXPECT_EQ(43U, exit_code);
    EXPECT_TRUE(os::threads().wait(first));
    EXPECT_TRUE(os::threads().close(first));
}

TEST_F(MThreadTest, IdsOfTheUpperHalfAreFoundAgain) {
    threads.give_id(0xFFFFFFFEU);
    EXPECT_EQ(-2, create());
    EXPECT_TRUE(MThread_Join(-2, nullptr));
    EXPECT_FALSE(MThread_Join(-2, nullptr));
    EXPECT_EQ((Texts{"MThread_Join(): thread -2 not in list"}), trace_reports());
}

// Joining

TEST_F(MThreadTest, AnUnknownIdIsReported) {
    unsigned exit_code = 99;
    EXPECT_FALSE(MThread_Join(-1, &exit_code));
    EXPECT_EQ((Texts{"MThread_Join(): thread -1 not in list"}), trace_reports());
    EXPECT_EQ(99U, exit_code);
}

TEST_F(MThreadTest, AnIdThatWasJoinedIsUnknown) {
    const std::int32_t id = create();
    EXPECT_TRUE(MThread_Join(id, nullptr));
    EXPECT_FALSE(MThread_Join(id, nullptr));
    EXPECT_EQ((Texts{"MThread_Join(): thread " + std::to_string(id) + " not in list"}), trace_reports());
}

TEST_F(MThreadTest, WithoutAPlaceForItTheExitCodeIsNotRead) {
    clean_up(create());
    EXPECT_EQ(0, threads.calls("exit_code"));
}

TEST_F(MThreadTest, TwoJoinersOfOneIdBothSucceed) {
    Gate release;
    const std::int32_t id = MThread_Create(wait_for_gate, &release);
    const auto join = [id] {
        unsigned exit_code = 0;
        return MThread_Join(id, &exit_code) ? exit_code : 0;
    };
    auto first = std::async(std::launch::async, join);
    auto second = std::async(std::launch::async, join);
    threads.wait_for_calls("wait", 2);
    release.open();
    EXPECT_EQ(7U, first.get());
    EXPECT_EQ(7U, second.get());
    // Each joiner's copy, and the one of the list.
    EXPECT_EQ(3, threads.calls("close"));
    EXPECT_FALSE(MThread_Join(id, nullptr));
    EXPECT_EQ(1U, trace_reports().size());
}

TEST_F(MThreadTest, TheListIsFreeWhileSomeoneWaits) {
    Gate release;
    const std::int32_t slow = MThread_Create(wait_for_gate, &release);
    auto joiner = std::async(std::launch::async, [slow] { return MThread_Join(slow, nullptr); });
    threads.wait_for_calls("wait", 1);
    clean_up(create());
    release.open();
    EXPECT_TRUE(joiner.get());
}

unsigned join_self(void* id) {
    const auto& own = *static_cast<std::shared_future<std::int32_t>*>(id);
    return MThread_Join(own.get(), nullptr) ? 1 : 2;
}

TEST_F(MThreadTest, AThreadThatJoinsItselfIsRefused) {
    std::promise<std::int32_t> promise;
    std::shared_future<std::int32_t> own = promise.get_future().share();
    const std::int32_t id = MThread_Create(join_self, &own);
    promise.set_value(id);
    threads.wait_for_calls("close", 1);
    unsigned exit_code = 0;
    EXPECT_TRUE(MThread_Join(id, &exit_code));
    EXPECT_EQ(2U, exit_code);
    const std::string report = "MThread_Join(): failed to join thread: ";  // and the system's own number
    const Texts reports = trace_reports();
    ASSERT_EQ(1U, reports.size());
    ASSERT_TRUE(reports[0].starts_with(report)) << reports[0];
    EXPECT_GT(std::stoi(reports[0].substr(report.size())), 0);
}

// What the system refuses while a thread is joined, and the report of it.
struct JoinFault {
    const char* operation;
    int nth;
    const char* report;
    bool listed_afterwards;
};

class MThreadJoinFaultTest : public MThreadTest, public ::testing::WithParamInterface<JoinFault> {};

TEST_P(MThreadJoinFaultTest, IsReported) {
    const JoinFault& fault = GetParam();
    const std::int32_t id = create();
    threads.fail(fault.operation, ENOMEM, fault.nth);
    unsigned exit_code = 99;
    EXPECT_FALSE(MThread_Join(id, &exit_code));
    EXPECT_EQ((Texts{fault.report}), trace_reports());
    EXPECT_EQ(fault.listed_afterwards ? 1U : 0U, threads.open_handles());
    if (fault.listed_afterwards) clean_up(id);
}

INSTANTIATE_TEST_SUITE_P(
    Each, MThreadJoinFaultTest,
    ::testing::Values(
        JoinFault{"duplicate", 1, "MThread_Join(): DuplicateHandle() failed: 12", true},
        JoinFault{"wait", 1, "MThread_Join(): failed to join thread: 12", true},
        JoinFault{"exit_code", 1, "MThread_Join(): failed to get exit code of joined thread: 12", true},
        JoinFault{"close", 1, "MThread_Join(): failed to close handle of joined thread: 12", true},
        JoinFault{"close", 2, "MThread_Join(): failed to close handle of joined thread: 12", false}));

// Duplication

TEST_F(MThreadTest, ADuplicateOutlivesTheListsHandle) {
    const std::int32_t id = create();
    const os::ThreadHandle copy = MThread_DuplicateWindowsHandle(id);
    ASSERT_NE(os::no_thread, copy);
    clean_up(id);
    unsigned exit_code = 0;
    EXPECT_TRUE(os::threads().wait(copy));
    EXPECT_TRUE(os::threads().exit_code(copy, exit_code));
    EXPECT_EQ(42U, exit_code);
    EXPECT_TRUE(os::threads().close(copy));
}

TEST_F(MThreadTest, ADuplicateOfAnUnknownThreadIsRefusedWithoutAReport) {
    EXPECT_EQ(os::no_thread, MThread_DuplicateWindowsHandle(-1));
    const std::int32_t id = create();
    clean_up(id);
    EXPECT_EQ(-1, MThread_DuplicateWindowsHandle(id));
}

TEST_F(MThreadTest, ADuplicateThatFailsIsReported) {
    const std::int32_t id = create();
    threads.fail("duplicate", EMFILE);
    EXPECT_EQ(-1, MThread_DuplicateWindowsHandle(id));
    EXPECT_EQ((Texts{"MThread_DuplicateWindowsHandle(): DuplicateHandle() failed: 24"}), trace_reports());
    clean_up(id);
}

// Many at once

TEST_F(MThreadTest, ManyMakeAndJoinThreadsAtOnce) {
    std::atomic<int> joined{0};
    const auto work = [&] {
        for (unsigned i = 0; i < 50; ++i) {
            unsigned exit_code = 0;
            if (MThread_Join(MThread_Create(give_back, &i), &exit_code) && exit_code == i) ++joined;
        }
    };
    { const std::jthread a(work), b(work), c(work), d(work); }
    EXPECT_EQ(200, joined);
}

// The mutex

bool another_thread_can_lock(kesh::Lockable& mutex) {
    return std::async(std::launch::async,
                      [&] {
                          if (!mutex.TryLock()) return false;
                          mutex.Unlock();
                          return true;
                      })
        .get();
}

static_assert(std::is_abstract_v<kesh::Lockable> && std::has_virtual_destructor_v<kesh::Lockable>);

// The analysis knows of no second time.
bool lock_again(kesh::Lockable& mutex) OS_NO_THREAD_SAFETY_ANALYSIS { return mutex.TryLock(); }
void unlock_once(kesh::Lockable& mutex) OS_NO_THREAD_SAFETY_ANALYSIS { mutex.Unlock(); }

TEST(ThreadMutexTest, ItsOwnerEntersItAgain) {
    kesh::ThreadMutex mutex;
    mutex.Lock();
    EXPECT_TRUE(lock_again(mutex));
    EXPECT_FALSE(another_thread_can_lock(mutex));
    unlock_once(mutex);
    EXPECT_FALSE(another_thread_can_lock(mutex));
    mutex.Unlock();
    EXPECT_TRUE(another_thread_can_lock(mutex));
}

TEST(ThreadMutexTest, TryLockTakesAFreeOne) {
    kesh::ThreadMutex mutex;
    const bool locked = mutex.TryLock();
    EXPECT_TRUE(locked);
    EXPECT_FALSE(another_thread_can_lock(mutex));
    if (locked) mutex.Unlock();
}

TEST(ThreadMutexTest, LockWaitsForItsOwner) {
    kesh::ThreadMutex mutex;
    int guarded = 0;
    const auto add = [&] {
        for (int i = 0; i < 1000; ++i) {
            mutex.Lock();
            ++guarded;
            mutex.Unlock();
        }
    };
    { const std::jthread a(add), b(add); }
    EXPECT_EQ(2000, guarded);
}

}  // namespace
