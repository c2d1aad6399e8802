// A plain, non-recursive mutex and its one guard, visible to clang's thread-safety analysis.
#pragma once

#include <mutex>

#if defined(__clang__)
#define OS_TSA(x) __attribute__((x))
#else
#define OS_TSA(x)
#endif
#define OS_CAPABILITY OS_TSA(capability("mutex"))
#define OS_SCOPED_CAPABILITY OS_TSA(scoped_lockable)
#define OS_GUARDED_BY(m) OS_TSA(guarded_by(m))
#define OS_ACQUIRE(...) OS_TSA(acquire_capability(__VA_ARGS__))
#define OS_RELEASE(...) OS_TSA(release_capability(__VA_ARGS__))
#define OS_REQUIRES(...) OS_TSA(requires_capability(__VA_ARGS__))
#define OS_NO_THREAD_SAFETY_ANALYSIS OS_TSA(no_thread_safety_analysis)

namespace os {

class OS_CAPABILITY Mutex {
public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() OS_ACQUIRE() { m_mutex.lock(); }
    void unlock() OS_RELEASE() { m_mutex.unlock(); }

    // For waits on a condition variable; the guard below is for everything else.
    std::mutex& native() OS_NO_THREAD_SAFETY_ANALYSIS { return m_mutex; }

private:
    std::mutex m_mutex;
};

class OS_SCOPED_CAPABILITY LockGuard {
public:
    explicit LockGuard(Mutex& mutex) OS_ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.lock(); }
    ~LockGuard() OS_RELEASE() { m_mutex.unlock(); }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;

private:
    Mutex& m_mutex;
};

}  // namespace os
