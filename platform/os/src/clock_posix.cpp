#include <time.h>

#include <atomic>

#include "os/clock.h"

namespace os {
namespace {

class SystemClock final : public MonotonicClock {
public:
    std::int64_t counter() override {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
    }
    std::int64_t frequency() override { return 1'000'000'000; }
};

SystemClock& system_clock() {
    static SystemClock clock;
    return clock;
}

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
