// Threads as the support library's thread layer needs them: handles that can be copied, waited for and asked.
//
// Every operation returns whether it succeeded; last_error() of os/error.h then has the reason. A handle
// names its thread until it is closed, whether the thread runs or has ended; any thread may use it, and any
// number may wait at once, but none while or after it is closed.
#pragma once

#include <cstdint>

namespace os {

using ThreadHandle = std::intptr_t;
constexpr ThreadHandle no_thread = -1;

class ThreadSystem {
public:
    virtual ~ThreadSystem() = default;

    // Starts a thread that runs the function, whose result is its exit code. The id is not 0, and no other
    // thread has it as long as a handle of this one is open. The caller closes the handle.
    // The shared library that this code is linked into stays loaded until the thread has ended, whoever
    // unloads it meanwhile: it is held before the thread starts, and let go when nothing of it runs on the
    // thread any more. If it can't be let go so, it stays.
    virtual bool start(unsigned (*function)(void*), void* argument, ThreadHandle& handle,
                       std::uint32_t& id) = 0;

    // Gives the thread the priority of an ordinary one, whatever that of its maker is.
    virtual bool set_normal_priority(ThreadHandle handle) = 0;

    // Another handle of the same thread, to be closed by itself.
    virtual bool duplicate(ThreadHandle handle, ThreadHandle& copy) = 0;

    // Waits until the thread has ended, to the last of what it runs. A thread can't wait for itself.
    virtual bool wait(ThreadHandle handle) = 0;

    // For a thread that was waited for.
    virtual bool exit_code(ThreadHandle handle, unsigned& code) = 0;

    // The thread itself goes on.
    virtual bool close(ThreadHandle handle) = 0;
};

// The threads in force: the system's, unless they were replaced.
ThreadSystem& threads();

// Puts others in force, or with null the system's again, and returns those that were in force, on which a
// wrapper can stand. The caller owns them, and they must live until they are out of force.
ThreadSystem* replace_threads(ThreadSystem* thread_system);

}  // namespace os
