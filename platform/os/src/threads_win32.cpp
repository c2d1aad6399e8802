#include <process.h>

#include <memory>

#include "os/error.h"
#include "os/threads.h"
#include "system_threads.h"
#include "windows_api.h"

namespace os {
namespace {

HANDLE native(ThreadHandle handle) { return reinterpret_cast<HANDLE>(handle); }

bool failed(int error) {
    set_last_error(error);
    return false;
}

// The library that this code is linked into, or null for a program: one more reference to it.
HMODULE hold_own_library() {
    HMODULE module = nullptr;
    const auto here = reinterpret_cast<LPCSTR>(&hold_own_library);
    if (!::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, here, &module)) return nullptr;
    return module == ::GetModuleHandleA(nullptr) ? nullptr : module;
}

struct Start {
    unsigned (*function)(void*);
    void* argument;
    HMODULE library;
};

unsigned __stdcall run_thread(void* start) {
    const Start work = *static_cast<Start*>(start);
    delete static_cast<Start*>(start);
    const unsigned code = work.function(work.argument);
    // No code of the library could return from unloading it. The C runtime lets its own part of the thread go
    // then, too.
    if (work.library) ::FreeLibraryAndExitThread(work.library, code);
    ::_endthreadex(code);
    return code;
}

bool give_up(HMODULE library) {
    const int error = last_error();
    if (library) ::FreeLibrary(library);
    return failed(error);
}

bool has_ended(ThreadHandle handle) { return ::WaitForSingleObject(native(handle), 0) == WAIT_OBJECT_0; }

class Win32Threads final : public ThreadSystem {
public:
    bool start(unsigned (*function)(void*), void* argument, ThreadHandle& handle,
               std::uint32_t& id) override {
        auto work = std::make_unique<Start>(Start{function, argument, hold_own_library()});
        unsigned number = 0;
        const std::uintptr_t made = ::_beginthreadex(nullptr, 0, run_thread, work.get(), 0, &number);
        if (made == 0) return give_up(work->library);
        static_cast<void>(work.release());
        handle = static_cast<ThreadHandle>(made);
        id = number;
        return true;
    }

    bool set_normal_priority(ThreadHandle handle) override {
        // A thread that has ended may have none any more.
        return ::SetThreadPriority(native(handle), THREAD_PRIORITY_NORMAL) != 0 || has_ended(handle);
    }

    bool duplicate(ThreadHandle handle, ThreadHandle& copy) override {
        const HANDLE process = ::GetCurrentProcess();
        HANDLE made = nullptr;
        if (!::DuplicateHandle(process, native(handle), process, &made, 0, FALSE, DUPLICATE_SAME_ACCESS))
            return false;
        copy = reinterpret_cast<ThreadHandle>(made);
        return true;
    }

    bool wait(ThreadHandle handle) override {
        // It would never end.
        if (::GetThreadId(native(handle)) == ::GetCurrentThreadId()) return failed(ERROR_POSSIBLE_DEADLOCK);
        return ::WaitForSingleObject(native(handle), INFINITE) == WAIT_OBJECT_0;
    }

    bool exit_code(ThreadHandle handle, unsigned& code) override {
        // A thread that runs has a code that one that has ended may have, too.
        if (!has_ended(handle)) return failed(ERROR_BUSY);
        DWORD found = 0;
        if (!::GetExitCodeThread(native(handle), &found)) return false;
        code = found;
        return true;
    }

    bool close(ThreadHandle handle) override { return ::CloseHandle(native(handle)) != 0; }
};

}  // namespace

ThreadSystem& system_threads() {
    static Win32Threads instance;
    return instance;
}

}  // namespace os
