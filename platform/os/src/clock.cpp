#include "os/clock.h"

#include <atomic>

#include "system_clock.h"

namespace os {

namespace {

// Null stands for the system's clock.
std::atomic<MonotonicClock*> in_force{nullptr};

}  // namespace

MonotonicClock& monotonic_clock() {
    MonotonicClock* const clock = in_force.load(std::memory_order_acquire);
    return clock ? *clock : system_clock();
}

MonotonicClock* replace_monotonic_clock(MonotonicClock* clock) {
    MonotonicClock* const old = in_force.exchange(clock, std::memory_order_acq_rel);
    return old ? old : &system_clock();
}

}  // namespace os
