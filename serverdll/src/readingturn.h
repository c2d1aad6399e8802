// Whose turn it is to read from the connection. One reads at a time: a caller who waits for an answer if
// nobody else does, and otherwise the reader thread. After a caller the reader thread stands back for a
// grace, so a series of queries never wakes it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "clientoptions.h"
#include "os/waitlock.h"

namespace serverdll {

class ReadingTurn {
public:
    explicit ReadingTurn(std::chrono::microseconds grace) : m_grace(grace) {}

    // A caller's side. True: the turn is yours until give_back. False: `done` has become true, the time is
    // over, or it is worth looking again.
    bool take_or_wait(const std::atomic<bool>& done, Clock::time_point end);
    void give_back(Clock::time_point now);

    // The reader thread's side. Waits for its turn; false when it is all over.
    bool take_for_reader();
    // It stands back until then.
    void give_back_for_reader(Clock::time_point not_before);
    std::chrono::microseconds grace() const noexcept { return m_grace; }

    // Ends the reader thread's turns and wakes everybody.
    void end();

private:
    void wait_for_caller(os::WaitLock& lock) OS_REQUIRES(m_lock);

    const std::chrono::microseconds m_grace;
    os::Mutex m_lock;
    std::condition_variable m_callers;
    std::condition_variable m_reader;
    bool m_taken OS_GUARDED_BY(m_lock) = false;
    bool m_ended OS_GUARDED_BY(m_lock) = false;
    bool m_readerSleeps OS_GUARDED_BY(m_lock) = false;  // until a caller gives the turn back
    std::size_t m_waiting OS_GUARDED_BY(m_lock) = 0;    // callers
    std::uint64_t m_turns OS_GUARDED_BY(m_lock) = 0;    // of callers
    Clock::time_point m_notBefore OS_GUARDED_BY(m_lock);
};

}  // namespace serverdll
