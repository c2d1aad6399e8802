#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "os/mutex.h"
#include "os/threads.h"
#include "os/waitlock.h"

namespace os {
namespace {

bool succeeded(int error) {
    errno = error;
    return error == 0;
}

std::uint32_t next_id() {
    static std::atomic<std::uint32_t> counter{0};
    std::uint32_t id = 0;
    // Neither 0 nor the -1 by which callers tell a failure.
    do id = ++counter;
    while (id == 0 || id == UINT32_MAX);
    return id;
}

struct Start {
    unsigned (*function)(void*);
    void* argument;
};

extern "C" void* run_thread(void* start) {
    const Start work = *static_cast<Start*>(start);
    delete static_cast<Start*>(start);
    return reinterpret_cast<void*>(std::uintptr_t{work.function(work.argument)});
}

// A thread that several may wait for; the system itself lets only one do so, and once.
class Thread {
public:
    Thread() = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    // With the last handle.
    ~Thread() {
        if (m_started && m_state != State::Joined) pthread_detach(m_thread);
    }

    bool start(unsigned (*function)(void*), void* argument) {
        auto work = std::make_unique<Start>(Start{function, argument});
        if (!succeeded(pthread_create(&m_thread, nullptr, run_thread, work.get()))) return false;
        static_cast<void>(work.release());
        m_started = true;
        return true;
    }

    bool wait() {
        // It would never end.
        if (pthread_equal(m_thread, pthread_self())) return succeeded(EDEADLK);
        WaitLock lock(m_lock);
        while (m_state == State::BeingJoined) lock.wait(m_changed);
        if (m_state == State::Joined) return true;
        m_state = State::BeingJoined;
        lock.unlock();
        void* result = nullptr;
        const int error = pthread_join(m_thread, &result);
        lock.lock();
        m_state = error == 0 ? State::Joined : State::Unjoined;
        m_exit_code = static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(result));
        m_changed.notify_all();
        return succeeded(error);
    }

    bool exit_code(unsigned& code) {
        const LockGuard guard(m_lock);
        if (m_state != State::Joined) return succeeded(EBUSY);
        code = m_exit_code;
        return true;
    }

    bool set_normal_priority() {
        const LockGuard guard(m_lock);
        if (m_state != State::Unjoined) return true;
        const sched_param normal{};
        const int error = pthread_setschedparam(m_thread, SCHED_OTHER, &normal);
        // It may have ended meanwhile.
        return succeeded(error == ESRCH ? 0 : error);
    }

private:
    enum class State { Unjoined, BeingJoined, Joined };

    pthread_t m_thread{};
    bool m_started = false;
    Mutex m_lock;
    std::condition_variable m_changed;
    State m_state OS_GUARDED_BY(m_lock) = State::Unjoined;
    unsigned m_exit_code OS_GUARDED_BY(m_lock) = 0;
};

using Shared = std::shared_ptr<Thread>;

Shared& shared(ThreadHandle handle) { return *reinterpret_cast<Shared*>(handle); }
ThreadHandle new_handle(const Shared& thread) { return reinterpret_cast<ThreadHandle>(new Shared(thread)); }

class PosixThreads final : public ThreadSystem {
public:
    bool start(unsigned (*function)(void*), void* argument, ThreadHandle& handle,
               std::uint32_t& id) override {
        const auto thread = std::make_shared<Thread>();
        if (!thread->start(function, argument)) return false;
        handle = new_handle(thread);
        id = next_id();
        return true;
    }

    bool set_normal_priority(ThreadHandle handle) override { return shared(handle)->set_normal_priority(); }

    bool duplicate(ThreadHandle handle, ThreadHandle& copy) override {
        copy = new_handle(shared(handle));
        return true;
    }

    bool wait(ThreadHandle handle) override { return shared(handle)->wait(); }
    bool exit_code(ThreadHandle handle, unsigned& code) override { return shared(handle)->exit_code(code); }

    bool close(ThreadHandle handle) override {
        delete &shared(handle);
        return true;
    }
};

ThreadSystem& system_threads() {
    static PosixThreads instance;
    return instance;
}

// Null stands for the system's.
std::atomic<ThreadSystem*> in_force{nullptr};

}  // namespace

ThreadSystem& threads() {
    ThreadSystem* const found = in_force.load(std::memory_order_acquire);
    return found ? *found : system_threads();
}

ThreadSystem* replace_threads(ThreadSystem* thread_system) {
    ThreadSystem* const old = in_force.exchange(thread_system, std::memory_order_acq_rel);
    return old ? old : &system_threads();
}

}  // namespace os
