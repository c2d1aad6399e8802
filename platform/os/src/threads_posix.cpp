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

// A thread that several may wait for; the system itself lets only one do so, and once.
class Thread {
public:
    Thread() = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    bool start(void* (*function)(void*), void* argument) {
        return succeeded(pthread_create(&m_thread, nullptr, function, argument));
    }

    // On the thread itself, before its end.
    void set_exit_code(unsigned code) {
        const LockGuard guard(m_lock);
        m_exit_code = code;
    }

    // On the thread itself, as its end. Unless somebody waits for it, the system then keeps nothing of it.
    void end() {
        const LockGuard guard(m_lock);
        if (m_state != State::Running) return;
        m_state = State::Ended;
        pthread_detach(pthread_self());
    }

    bool wait() {
        // It would never end.
        if (pthread_equal(m_thread, pthread_self())) return succeeded(EDEADLK);
        WaitLock lock(m_lock);
        while (m_state == State::BeingJoined) lock.wait(m_changed);
        if (m_state != State::Running) {
            m_state = State::WaitedFor;
            return true;
        }
        m_state = State::BeingJoined;
        lock.unlock();
        const int error = pthread_join(m_thread, nullptr);
        lock.lock();
        m_state = error == 0 ? State::WaitedFor : State::Running;
        m_changed.notify_all();
        return succeeded(error);
    }

    bool exit_code(unsigned& code) {
        const LockGuard guard(m_lock);
        if (m_state != State::WaitedFor) return succeeded(EBUSY);
        code = m_exit_code;
        return true;
    }

    bool set_normal_priority() {
        const LockGuard guard(m_lock);
        if (m_state != State::Running) return true;
        const sched_param normal{};
        const int error = pthread_setschedparam(m_thread, SCHED_OTHER, &normal);
        // It may have ended meanwhile.
        return succeeded(error == ESRCH ? 0 : error);
    }

private:
    enum class State { Running, BeingJoined, Ended, WaitedFor };

    pthread_t m_thread{};
    Mutex m_lock;
    std::condition_variable m_changed;
    State m_state OS_GUARDED_BY(m_lock) = State::Running;
    unsigned m_exit_code OS_GUARDED_BY(m_lock) = 0;
};

using Shared = std::shared_ptr<Thread>;

// What is left to do at the end of a thread. The system itself does it, behind all that the thread runs.
class EndOfThread {
public:
    EndOfThread() {
        const auto let_go = reinterpret_cast<void (*)()>(dlclose);
        m_usable = pthread_key_create(&m_ending, end) == 0 &&
                   pthread_key_create(&m_library, reinterpret_cast<void (*)(void*)>(let_go)) == 0;
    }
    // When the library goes: keys for each of its lives would use them up.
    ~EndOfThread() {
        if (!m_usable) return;
        pthread_key_delete(m_ending);
        pthread_key_delete(m_library);
    }
    EndOfThread(const EndOfThread&) = delete;
    EndOfThread& operator=(const EndOfThread&) = delete;

    static EndOfThread& instance() {
        static EndOfThread instance;
        return instance;
    }

    // On the thread whose end is meant. Without a place for it its stack stays, and the library.
    void expect(const Shared& thread, void* library) {
        auto ending = std::make_unique<Ending>(Ending{thread, library});
        if (m_usable && pthread_setspecific(m_ending, ending.get()) == 0) static_cast<void>(ending.release());
    }

private:
    struct Ending {
        Shared thread;
        void* library;
    };

    static void end(void* pointer) {
        const std::unique_ptr<Ending> ending(static_cast<Ending*>(pointer));
        ending->thread->end();
        // The system calls dlclose next: no code of the library could return from unloading it.
        pthread_setspecific(instance().m_library, ending->library);
    }

    pthread_key_t m_ending{};
    pthread_key_t m_library{};
    bool m_usable = false;
};

struct Start {
    unsigned (*function)(void*);
    void* argument;
    Shared thread;
    void* library;
};

extern "C" void* run_thread(void* start) {
    const std::unique_ptr<Start> work(static_cast<Start*>(start));
    EndOfThread::instance().expect(work->thread, work->library);
    work->thread->set_exit_code(work->function(work->argument));
    return nullptr;
}

bool start_thread(unsigned (*function)(void*), void* argument, const Shared& thread) {
    auto work = std::make_unique<Start>(Start{function, argument, thread, hold_own_library()});
    if (!thread->start(run_thread, work.get())) {
        const int error = errno;
        if (work->library) dlclose(work->library);
        return succeeded(error);
    }
    static_cast<void>(work.release());
    return true;
}

Shared& shared(ThreadHandle handle) { return *reinterpret_cast<Shared*>(handle); }
ThreadHandle new_handle(const Shared& thread) { return reinterpret_cast<ThreadHandle>(new Shared(thread)); }

class PosixThreads final : public ThreadSystem {
public:
    bool start(unsigned (*function)(void*), void* argument, ThreadHandle& handle,
               std::uint32_t& id) override {
        const auto thread = std::make_shared<Thread>();
        if (!start_thread(function, argument, thread)) return false;
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
