// Threads that are known by a number, and the library's mutex.
//
// A list of the process keeps each thread's handle under the thread's id from MThread_Create to the
// MThread_Join that ends it. Failures are reported to the error trace. Any thread may call anything here.
#pragma once

#include <cstdint>

#include "os/mutex.h"
#include "os/threads.h"

// A lock that its owner may enter again. Init makes one, which Delete takes away when nobody holds it; a
// section is left as often as it was entered. TryEnter doesn't wait; true if the section was entered.
struct MCriticalSection;
MCriticalSection* MCriticalSection_Init();
void MCriticalSection_Delete(MCriticalSection* section);
void MCriticalSection_Enter(MCriticalSection* section);
void MCriticalSection_Leave(MCriticalSection* section);
bool MCriticalSection_TryEnter(MCriticalSection* section);

namespace kesh {

// What can be locked. The order of the operations is a contract.
class OS_CAPABILITY Lockable {
public:
    virtual void Lock() OS_ACQUIRE() = 0;
    virtual void Unlock() OS_RELEASE() = 0;
    // Doesn't wait; true if it is locked now, to be unlocked by the caller.
    virtual bool TryLock() OS_TSA(try_acquire_capability(true)) = 0;
    virtual ~Lockable() = default;
};

// A mutex that its owner may lock again, to be unlocked as often.
class OS_CAPABILITY ThreadMutex : public Lockable {
public:
    ThreadMutex();
    ThreadMutex(const ThreadMutex&) = delete;
    ThreadMutex& operator=(const ThreadMutex&) = delete;

    void Lock() OS_ACQUIRE() override;
    void Unlock() OS_RELEASE() override;
    bool TryLock() OS_TSA(try_acquire_capability(true)) override;
    ~ThreadMutex() override;

private:
    MCriticalSection* m_section;
};

}  // namespace kesh

// Starts a thread that runs the function with this argument, which is handed on as it is. Returns its id, or
// -1. The thread may run, and even end, before this returns.
std::int32_t MThread_Create(unsigned (*function)(void*), void* argument);

// Waits for the end of a thread, stores the function's result unless `exit_code` is null, and takes it off
// the list. Several may wait for one thread: all that came before the first of them was done get true, and
// the exit code. False also for an id that is not, or no longer, on the list.
bool MThread_Join(std::int32_t id, unsigned* exit_code);

// A new handle of a thread on the list, which the caller closes; -1 if the id is unknown (without a report)
// or the system refuses.
os::ThreadHandle MThread_DuplicateWindowsHandle(std::int32_t id);
