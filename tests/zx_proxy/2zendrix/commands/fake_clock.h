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

    std::atomic<std::int64_t> m_counter{0};

private:
    std::int64_t m_frequency;
    os::MonotonicClock* m_previous;
};
