// The clock of a day that passes in a minute: motions take no real time, and pauses are skipped.
#pragma once

#include <algorithm>
#include <atomic>

#include "machine/clock.h"

class DayClock : public zendrix::sim::Clock {
public:
    double now() override { return m_now; }

    // A little time passes even where there is nothing to wait for.
    Duration wait_until(double when) override {
        m_now = std::max(m_now + tick, when);
        return Duration::zero();
    }

    // On the server's thread.
    void skip(double seconds) { m_now = m_now + seconds; }

private:
    static constexpr double tick = 1e-6;
    std::atomic<double> m_now = 0.0;
};
