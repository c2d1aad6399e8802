#include <time.h>

#include "os/clock.h"
#include "system_clock.h"

namespace os {
namespace {

std::int64_t nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

std::int64_t read_clock(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return nanoseconds(now);
}

class SystemClock final : public MonotonicClock {
public:
    std::int64_t counter() override { return read_clock(CLOCK_MONOTONIC); }
    std::int64_t frequency() override { return 1'000'000'000; }

#if defined(CLOCK_MONOTONIC_COARSE)
    // The time of the last tick of the kernel, which it keeps in memory.
    std::int64_t coarse_counter() override { return read_clock(CLOCK_MONOTONIC_COARSE); }
    std::int64_t coarse_lag() override {
        static const std::int64_t tick = [] {
            timespec resolution{};
            clock_getres(CLOCK_MONOTONIC_COARSE, &resolution);
            return nanoseconds(resolution);
        }();
        return tick;
    }
#endif
};

}  // namespace

MonotonicClock& system_clock() {
    static SystemClock clock;
    return clock;
}

}  // namespace os
