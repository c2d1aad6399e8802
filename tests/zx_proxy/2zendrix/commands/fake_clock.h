// A monotonic clock that stands until the test moves it; in force as long as it lives.
#pragma once

#include <atomic>
#include <cstdint>

#include "os/clock.h"

class FakeClock : public os::MonotonicClock {
public:
    explicit FakeClock(std::int64_t frequency = 1000) : m_frequency(frequency) {
        m_previous = os::replace_monotonic_clock(this);
    }
    ~FakeClock() override { os::replace_monotonic_clock(m_previous); }
    FakeClock(const FakeClock&) = delete;
    FakeClock& operator=(const FakeClock&) = delete;

    std::int64_t counter() override { return m_counter.load(); }
    std::int64_t frequency() override { return m_frequency; }
    std::int64_t coarse_counter() override { return m_counter.load() - m_lag; }
    std::int64_t coarse_lag() override { return m_max_lag; }

    std::atomic<std::int64_t> m_counter{0};
    std::int64_t m_lag = 0;      // how far the coarse counter is behind now
    std::int64_t m_max_lag = 0;  // and at most

private:
    std::int64_t m_frequency;
    os::MonotonicClock* m_previous;
};
