#include "os/threads.h"

#include <atomic>

#include "system_threads.h"

namespace os {

namespace {

// Null stands for the system's.
std::atomic<ThreadSystem*> in_force{nullptr};

}  // namespace

ThreadSystem& threads() {
    ThreadSystem* const found = in_force.load(std::memory_order_acquire);
    return found ? *found : system_threads();
}

ThreadSystem* replace_threads(ThreadSystem* thread_system) {
    ThreadSystem* const old = in_force.exchange(thread_system, std::memory_order_acq_rel);
    return old ? old : &system_threads();
}

}  // namespace os
