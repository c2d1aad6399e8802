#include "os/clock.h"

#include "in_force.h"
#include "system_clock.h"

namespace os {

namespace {
InForce<MonotonicClock, system_clock> in_force;
}

MonotonicClock& monotonic_clock() { return in_force.get(); }

MonotonicClock* replace_monotonic_clock(MonotonicClock* clock) { return in_force.replace(clock); }

}  // namespace os
