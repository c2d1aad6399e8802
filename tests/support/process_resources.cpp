#include "process_resources.h"

#include <chrono>
#include <thread>

namespace test_support {

bool threads_sink_to(std::ptrdiff_t count) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (thread_count() > count) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::yield();
    }
    return true;
}

}  // namespace test_support
