#include "notifier.h"

#include <mutex>

namespace zxhost {

int HostNotifier::HasNotification() {
    os::LockGuard guard(m_lock);
    return m_waiting ? 1 : 0;
}

bool HostNotifier::Notify() {
    {
        os::LockGuard guard(m_lock);
        m_waiting = true;
    }
    m_rang.notify_one();
    return true;
}

void HostNotifier::wait(std::chrono::milliseconds at_most) OS_NO_THREAD_SAFETY_ANALYSIS {
    std::unique_lock<std::mutex> lock(m_lock.native());
    m_rang.wait_for(lock, at_most, [this]() OS_NO_THREAD_SAFETY_ANALYSIS { return m_waiting; });
    m_waiting = false;
}

}  // namespace zxhost
