// One callback that a host can replace at any time, and one thread that runs it.
//
// Replacing returns only when the replaced callback isn't running, unless it is called from inside it. Runs
// may nest (a callback whose own call fails runs the error callback), always on the one running thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

#include "os/waitlock.h"

namespace serverdll {

template <typename Function>
class CallbackSlot {
public:
    void set(Function function, void* user) {
        os::WaitLock lock(m_lock);
        m_function = function;
        m_user = user;
        const std::uint64_t mine = m_generation.load(std::memory_order_relaxed) + 1;
        m_generation.store(mine, std::memory_order_release);
        while (m_depth > 0 && m_running < mine && m_runner != std::this_thread::get_id()) lock.wait(m_left);
    }

    void get(Function& function, void*& user) {
        const os::LockGuard guard(m_lock);
        function = m_function;
        user = m_user;
    }

    // Removes the callback without waiting for it.
    void drop() {
        const os::LockGuard guard(m_lock);
        m_function = nullptr;
        m_generation.fetch_add(1, std::memory_order_release);
    }

    // Calls call(function, user, i) for each i below count; a replacement takes effect before the next i.
    // Without a callback nothing happens. `call` lets no exception out.
    template <typename Call>
    void run(std::size_t count, Call&& call) {
        for (std::size_t i = 0; i < count;) {
            Function function = nullptr;
            void* user = nullptr;
            const std::uint64_t generation = enter(function, user);
            if (function == nullptr) return leave();
            do {
                call(function, user, i++);
            } while (i < count && generation == m_generation.load(std::memory_order_acquire));
            leave();
        }
    }

private:
    std::uint64_t enter(Function& function, void*& user) {
        const os::LockGuard guard(m_lock);
        function = m_function;
        user = m_user;
        const std::uint64_t generation = m_generation.load(std::memory_order_relaxed);
        if (m_depth++ == 0) m_running = generation;
        m_runner = std::this_thread::get_id();
        return generation;
    }

    void leave() {
        const os::LockGuard guard(m_lock);
        if (--m_depth == 0) m_left.notify_all();
    }

    os::Mutex m_lock;
    std::condition_variable m_left;
    std::atomic<std::uint64_t> m_generation = 0;
    Function m_function OS_GUARDED_BY(m_lock) = nullptr;
    void* m_user OS_GUARDED_BY(m_lock) = nullptr;
    std::size_t m_depth OS_GUARDED_BY(m_lock) = 0;
    std::uint64_t m_running OS_GUARDED_BY(m_lock) = 0;  // generation of the outermost run
    std::thread::id m_runner OS_GUARDED_BY(m_lock);
};

}  // namespace serverdll
