#include "mstopwatch.h"

#include "os/clock.h"

MStopwatch::MStopwatch()
    : m_frequency(static_cast<double>(os::monotonic_clock().frequency())),
      m_start(os::monotonic_clock().counter()) {}

double MStopwatch::seconds_to(std::int64_t counter) const {
    return static_cast<double>(counter - m_start) / m_frequency;
}

double MStopwatch::elapsed() const { return seconds_to(os::monotonic_clock().counter()); }

double MStopwatch::restart() {
    const std::int64_t now = os::monotonic_clock().counter();
    const double elapsed = seconds_to(now);
    m_start = now;
    return elapsed;
}
