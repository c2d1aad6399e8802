// The monotonic counter that stopwatches read, replaceable by a test.
#pragma once

#include <cstdint>

namespace os {

// A counter that never goes back, and how much it counts in a second. Both may be asked on any thread.
class MonotonicClock {
public:
    virtual ~MonotonicClock() = default;
    virtual std::int64_t counter() = 0;
    virtual std::int64_t frequency() = 0;

    // The same counter, read at less cost: never ahead of counter(), and behind it by coarse_lag() at most.
    virtual std::int64_t coarse_counter() { return counter(); }
    virtual std::int64_t coarse_lag() { return 0; }
};

// The clock in force: the system's, unless it was replaced.
MonotonicClock& monotonic_clock();

// Puts another clock in force, or with null the system's again, and returns the one that was in force. The
// caller owns it, and it must live until it is out of force.
MonotonicClock* replace_monotonic_clock(MonotonicClock* clock);

}  // namespace os
