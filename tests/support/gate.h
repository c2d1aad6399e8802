// A gate that opens once and stays open; any number of threads may wait before it. It stands for std::latch
// and std::binary_semaphore, which lose wake-ups in libstdc++ 12 where the system has no futex, as on
// Windows.
#pragma once

#include <chrono>
#include <condition_variable>

#include "os/mutex.h"
#include "os/waitlock.h"

class Gate {
public:
    void open() {
        os::LockGuard guard(m_mutex);
        m_open = true;
        m_opened.notify_all();  // under the lock: whoever waits may end the gate right after
    }

    bool is_open() const {
        os::LockGuard guard(m_mutex);
        return m_open;
    }

    // False when that takes too long.
    bool wait(std::chrono::steady_clock::duration at_most = std::chrono::seconds(30)) {
        const auto end = std::chrono::steady_clock::now() + at_most;
        os::WaitLock lock(m_mutex);
        while (!m_open && lock.wait_until(m_opened, end)) continue;
        return m_open;
    }

private:
    mutable os::Mutex m_mutex;
    std::condition_variable m_opened;
    bool m_open OS_GUARDED_BY(m_mutex) = false;
};
