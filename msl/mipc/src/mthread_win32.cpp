#include <map>
#include <memory>

#include "errtrace.h"
#include "mthread.h"
#include "os/critical_section.h"
#include "os/error.h"

struct MCriticalSection {
    os::CriticalSection section;
};

MCriticalSection* MCriticalSection_Init() { return new MCriticalSection; }
void MCriticalSection_Delete(MCriticalSection* section) { delete section; }
void MCriticalSection_Enter(MCriticalSection* section) { section->section.enter(); }
void MCriticalSection_Leave(MCriticalSection* section) { section->section.leave(); }
bool MCriticalSection_TryEnter(MCriticalSection* section) { return section->section.try_enter(); }

namespace kesh {

// The analysis can't see what lies behind the section.
ThreadMutex::ThreadMutex() : m_section(MCriticalSection_Init()) {}
ThreadMutex::~ThreadMutex() { MCriticalSection_Delete(m_section); }
void ThreadMutex::Lock() OS_NO_THREAD_SAFETY_ANALYSIS { MCriticalSection_Enter(m_section); }
void ThreadMutex::Unlock() OS_NO_THREAD_SAFETY_ANALYSIS { MCriticalSection_Leave(m_section); }
bool ThreadMutex::TryLock() OS_NO_THREAD_SAFETY_ANALYSIS { return MCriticalSection_TryEnter(m_section); }

}  // namespace kesh

namespace {

constexpr const char* source = "msl/mipc/src/mthread_win32";

class OS_SCOPED_CAPABILITY Guard {
public:
    explicit Guard(kesh::ThreadMutex& mutex) OS_ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.Lock(); }
    ~Guard() OS_RELEASE() { m_mutex.Unlock(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

private:
    kesh::ThreadMutex& m_mutex;
};

// Ends with the process, or with the library that this code stands in; whoever is listed then is never
// joined.
struct ThreadList {
    ThreadList() { static_cast<void>(os::threads()); }  // they outlive the list
    ~ThreadList() {
        for (const auto& [id, handle] : handles) os::threads().close(handle);
    }

    kesh::ThreadMutex mutex;
    std::map<std::uint32_t, os::ThreadHandle> handles OS_GUARDED_BY(mutex);
};

ThreadList& thread_list() {
    static ThreadList list;
    return list;
}

enum class Lookup { Found, Unknown, Failed };

// A handle of its own for the caller, which nobody else can close under it.
Lookup duplicate_listed(std::int32_t id, os::ThreadHandle& copy) {
    ThreadList& list = thread_list();
    const Guard guard(list.mutex);
    const auto found = list.handles.find(static_cast<std::uint32_t>(id));
    if (found == list.handles.end()) return Lookup::Unknown;
    return os::threads().duplicate(found->second, copy) ? Lookup::Found : Lookup::Failed;
}

os::ThreadHandle take_listed(std::int32_t id) {
    ThreadList& list = thread_list();
    const Guard guard(list.mutex);
    const auto found = list.handles.find(static_cast<std::uint32_t>(id));
    if (found == list.handles.end()) return os::no_thread;
    const os::ThreadHandle handle = found->second;
    list.handles.erase(found);
    return handle;
}

bool close_joined(os::ThreadHandle handle) {
    if (os::threads().close(handle)) return true;
    MERRTRACE_REPORT(source, "MThread_Join(): failed to close handle of joined thread: %d", os::last_error());
    return false;
}

// On a handle that is the joiner's own.
bool wait_for_end(os::ThreadHandle handle, unsigned* exit_code) {
    if (!os::threads().wait(handle)) {
        MERRTRACE_REPORT(source, "MThread_Join(): failed to join thread: %d", os::last_error());
        return false;
    }
    if (exit_code && !os::threads().exit_code(handle, *exit_code)) {
        MERRTRACE_REPORT(source, "MThread_Join(): failed to get exit code of joined thread: %d",
                         os::last_error());
        return false;
    }
    return true;
}

struct StartRecord {
    unsigned (*function)(void*);
    void* argument;
};

unsigned trampoline(void* record) {
    const std::unique_ptr<StartRecord> start(static_cast<StartRecord*>(record));
    return start->function(start->argument);
}

}  // namespace

std::int32_t MThread_Create(unsigned (*function)(void*), void* argument) {
    ThreadList& list = thread_list();
    auto record = std::make_unique<StartRecord>(StartRecord{function, argument});
    os::ThreadHandle handle = os::no_thread;
    std::uint32_t id = 0;
    if (!os::threads().start(trampoline, record.get(), handle, id)) {
        MERRTRACE_REPORT(source, "MThread_Create(): failed to create thread: %d", os::last_error());
        return -1;
    }
    static_cast<void>(record.release());  // it is the thread's now
    if (!os::threads().set_normal_priority(handle)) {
        MERRLOG_REPORT(source, "MThread_Create(): failed to set thread priority: %d", os::last_error());
    }
    const Guard guard(list.mutex);
    list.handles[id] = handle;
    return static_cast<std::int32_t>(id);
}

bool MThread_Join(std::int32_t id, unsigned* exit_code) {
    os::ThreadHandle copy = os::no_thread;
    switch (duplicate_listed(id, copy)) {
        case Lookup::Unknown:
            MERRTRACE_REPORT(source, "MThread_Join(): thread %d not in list", id);
            return false;
        case Lookup::Failed:
            MERRTRACE_REPORT(source, "MThread_Join(): DuplicateHandle() failed: %d", os::last_error());
            return false;
        case Lookup::Found:
            break;
    }
    if (!wait_for_end(copy, exit_code)) {
        os::threads().close(copy);
        return false;
    }
    if (!close_joined(copy)) return false;
    const os::ThreadHandle listed = take_listed(id);
    return listed == os::no_thread || close_joined(listed);
}

os::ThreadHandle MThread_DuplicateWindowsHandle(std::int32_t id) {
    os::ThreadHandle copy = os::no_thread;
    const Lookup lookup = duplicate_listed(id, copy);
    if (lookup == Lookup::Found) return copy;
    if (lookup == Lookup::Failed) {
        MERRTRACE_REPORT(source, "%s(): DuplicateHandle() failed: %d", "MThread_DuplicateWindowsHandle",
                         os::last_error());
    }
    return os::no_thread;
}
