#include "process_resources.h"

#include <chrono>
#include <thread>

namespace test_support {

namespace {

bool sinks_to(std::ptrdiff_t most, std::ptrdiff_t (*count)()) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (count() > most) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::yield();
    }
    return true;
}

}  // namespace

bool threads_sink_to(std::ptrdiff_t count) { return sinks_to(count, thread_count); }

bool handles_sink_to(std::ptrdiff_t count) { return sinks_to(count + handles_of_locks, handle_count); }

}  // namespace test_support
