// What this process holds of the system, for tests that nothing is left behind.
#pragma once

#include <cstddef>
#include <string>

namespace test_support {

std::ptrdiff_t thread_count();

// Waits until there are no more threads than these: the system takes a moment to forget one that was joined.
// False if that takes too long.
bool threads_sink_to(std::ptrdiff_t count);

// Open files and whatever else the system counts by handles.
std::ptrdiff_t handle_count();

// How many of them may come by chance and stay: on Windows a lock keeps an event from the first moment on in
// which two threads meet at it. Tests therefore take more turns than that.
extern const std::ptrdiff_t handles_of_locks;

// Waits until there are no more handles than these and those of locks; a server forgets a client a moment
// after that has gone. False if that takes too long.
bool handles_sink_to(std::ptrdiff_t count);

std::ptrdiff_t socket_count();

// Is a library from a file of this name in memory?
bool has_loaded(const std::string& file_name);

// Memory that isn't on disk, KiB; 0 where a sanitizer keeps freed memory.
long memory_in_use();

}  // namespace test_support
