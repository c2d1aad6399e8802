#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "os/mutex.h"
#include "os/threads.h"
#include "os/waitlock.h"
#include "system_threads.h"

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

// The library that this code is linked into, or null for a program: one more reference to it.
void* hold_own_library() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&hold_own_library), &info) == 0 || !info.dli_fname)
        return nullptr;
    return dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD);
}

// Lets a library go at the end of a thread. The system itself calls dlclose then, behind all that the library
// still has to run there: no code of the library could return from unloading it.
class LetGoAtEnd {
public:
    LetGoAtEnd() {
        const auto let_go = reinterpret_cast<void (*)()>(dlclose);
        m_usable = pthread_key_create(&m_key, reinterpret_cast<void (*)(void*)>(let_go)) == 0;
    }
    // When the library goes: a key for each of its lives would use them up.
    ~LetGoAtEnd() {
        if (m_usable) pthread_key_delete(m_key);
    }
    LetGoAtEnd(const LetGoAtEnd&) = delete;
    LetGoAtEnd& operator=(const LetGoAtEnd&) = delete;

    // On the thread whose end is meant. Without a place for it the library stays.
    void let_go_at_end(void* library) {
        if (m_usable) pthread_setspecific(m_key, library);
    }

private:
    pthread_key_t m_key{};
    bool m_usable = false;
};

LetGoAtEnd& own_library() {
    static LetGoAtEnd instance;
    return instance;
}

struct Start {
    unsigned (*function)(void*);
    void* argument;
    void* library;
};

extern "C" void* run_thread(void* start) {
    const Start work = *static_cast<Start*>(start);
    delete static_cast<Start*>(start);
    own_library().let_go_at_end(work.library);
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
        auto work = std::make_unique<Start>(Start{function, argument, hold_own_library()});
        if (const int error = pthread_create(&m_thread, nullptr, run_thread, work.get()); error != 0) {
            if (work->library) dlclose(work->library);
            return succeeded(error);
        }
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

}  // namespace

ThreadSystem& system_threads() {
    static PosixThreads instance;
    return instance;
}

}  // namespace os
