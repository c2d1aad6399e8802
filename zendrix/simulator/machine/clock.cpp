#include "machine/clock.h"

#include <algorithm>

namespace zendrix::sim {

namespace {

double seconds_since(std::chrono::steady_clock::time_point start) {
    return Clock::Duration(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

ScaledClock::ScaledClock(double factor) : m_factor(factor) {}

double ScaledClock::now() { return seconds_since(m_start) * m_factor; }

Clock::Duration ScaledClock::wait_until(double when) {
    return Duration(std::max(0.0, (when - now()) / m_factor));
}

double LeapingClock::now() { return seconds_since(m_start) + m_leapt; }

Clock::Duration LeapingClock::wait_until(double when) {
    m_leapt += std::max(0.0, when - now());
    return Duration::zero();
}

Clock::Duration ManualClock::wait_until(double when) {
    // Whoever moves the clock also tells the machine; until then there is nothing to wake up for.
    return when <= m_now ? Duration::zero() : Duration(std::chrono::hours(1));
}

}  // namespace zendrix::sim
