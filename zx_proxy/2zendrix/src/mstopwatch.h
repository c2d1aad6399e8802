// A stopwatch on the system's monotonic clock. One thread at a time.
#pragma once

#include <cstdint>

class MStopwatch {
public:
    // Starts at once.
    MStopwatch();

    // Seconds since the start.
    double elapsed() const;

    // elapsed() >= seconds, for callers that ask often: most of the time it costs less than elapsed().
    bool has_elapsed(double seconds) const;

    // What elapsed() gives, and starts anew.
    double restart();

private:
    double seconds_to(std::int64_t counter) const;

    double m_frequency;
    std::int64_t m_coarse_lag;
    std::int64_t m_start;
};
