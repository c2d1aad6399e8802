#include "readingturn.h"

namespace serverdll {

bool ReadingTurn::take_or_wait(const std::atomic<bool>& done, Clock::time_point end) {
    os::WaitLock lock(m_lock);
    if (done.load(std::memory_order_acquire)) return false;
    if (!m_taken) {
        m_taken = true;
        ++m_turns;
        return true;
    }
    ++m_waiting;
    lock.wait_until(m_callers, end);
    --m_waiting;
    return false;
}

void ReadingTurn::give_back(Clock::time_point now) {
    const os::LockGuard guard(m_lock);
    m_taken = false;
    m_notBefore = now + m_grace;
    if (m_waiting > 0) m_callers.notify_all();
    if (m_readerSleeps) m_reader.notify_one();
}

bool ReadingTurn::take_for_reader() {
    os::WaitLock lock(m_lock);
    while (!m_ended) {
        if (m_taken) {
            wait_for_caller(lock);
        } else if (Clock::now() >= m_notBefore) {
            m_taken = true;
            return true;
        } else {
            lock.wait_until(m_reader, m_notBefore);
        }
    }
    return false;
}

// A caller who is quick about it must not be made to wake this thread; one who reads for long must.
void ReadingTurn::wait_for_caller(os::WaitLock& lock) {
    const std::uint64_t turn = m_turns;
    lock.wait_until(m_reader, Clock::now() + m_grace);
    m_readerSleeps = true;
    while (m_taken && m_turns == turn && !m_ended) lock.wait(m_reader);
    m_readerSleeps = false;
}

void ReadingTurn::give_back_for_reader(Clock::time_point not_before) {
    const os::LockGuard guard(m_lock);
    m_taken = false;
    m_notBefore = not_before;
    if (m_waiting > 0) m_callers.notify_all();
}

void ReadingTurn::end() {
    const os::LockGuard guard(m_lock);
    m_ended = true;
    m_callers.notify_all();
    m_reader.notify_all();
}

}  // namespace serverdll
