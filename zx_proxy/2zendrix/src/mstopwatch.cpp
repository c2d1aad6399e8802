#include "mstopwatch.h"

#include "os/clock.h"

MStopwatch::MStopwatch()
    : m_frequency(static_cast<double>(os::monotonic_clock().frequency())),
      m_coarse_lag(os::monotonic_clock().coarse_lag()),
      m_start(os::monotonic_clock().counter()) {}

double MStopwatch::seconds_to(std::int64_t counter) const {
    return static_cast<double>(counter - m_start) / m_frequency;
}

double MStopwatch::elapsed() const { return seconds_to(os::monotonic_clock().counter()); }

bool MStopwatch::has_elapsed(double seconds) const {
    const std::int64_t latest_now = os::monotonic_clock().coarse_counter() + m_coarse_lag;
    return seconds_to(latest_now) >= seconds && elapsed() >= seconds;
}

double MStopwatch::restart() {
    const std::int64_t now = os::monotonic_clock().counter();
    const double elapsed = seconds_to(now);
    m_start = now;
    return elapsed;
}
