// A guard of an os::Mutex that can wait on a condition variable, and leave the mutex for a while.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "os/mutex.h"

namespace os {

class OS_SCOPED_CAPABILITY WaitLock {
public:
    explicit WaitLock(Mutex& mutex) OS_ACQUIRE(mutex) : m_lock(mutex.native()) {}
    ~WaitLock() OS_RELEASE() {}
    WaitLock(const WaitLock&) = delete;
    WaitLock& operator=(const WaitLock&) = delete;

    void unlock() OS_RELEASE() { m_lock.unlock(); }
    void lock() OS_ACQUIRE() { m_lock.lock(); }

    // Both can return without cause: wait in a loop.
    void wait(std::condition_variable& condition) { condition.wait(m_lock); }
    // False when the time is over.
    bool wait_until(std::condition_variable& condition, std::chrono::steady_clock::time_point end) {
        return condition.wait_until(m_lock, end) == std::cv_status::no_timeout;
    }

private:
    std::unique_lock<std::mutex> m_lock;
};

}  // namespace os
