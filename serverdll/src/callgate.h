// Counts those who are inside, so that an owner can shut the door and wait until they have left.
#pragma once

#include <cstddef>

#include "os/waitlock.h"

namespace serverdll {

class CallGate {
public:
    // False once the door is shut.
    bool enter() {
        const os::LockGuard guard(m_lock);
        if (m_shut) return false;
        ++m_inside;
        return true;
    }

    void leave() {
        const os::LockGuard guard(m_lock);
        if (--m_inside == 0 && m_shut) m_empty.notify_all();
    }

    void shut() {
        const os::LockGuard guard(m_lock);
        m_shut = true;
    }

    void wait_until_empty() {
        os::WaitLock lock(m_lock);
        while (m_inside > 0) lock.wait(m_empty);
    }

private:
    os::Mutex m_lock;
    std::condition_variable m_empty;
    std::size_t m_inside OS_GUARDED_BY(m_lock) = 0;
    bool m_shut OS_GUARDED_BY(m_lock) = false;
};

}  // namespace serverdll
