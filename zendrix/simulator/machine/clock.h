// The machine's time, in seconds. It is handed to the machine, so a test can run an hour in a blink.
#pragma once

#include <chrono>

namespace zendrix::sim {

class Clock {
public:
    using Duration = std::chrono::duration<double>;

    virtual ~Clock() = default;

    // Machine time in seconds; never goes back.
    virtual double now() = 0;

    // How long to wait, in real time, until machine time reaches `when`, while a motion runs. A clock that
    // may leap answers zero and stands at `when` from then on.
    virtual Duration wait_until(double when) = 0;
};

// Real time times a factor.
class ScaledClock : public Clock {
public:
    explicit ScaledClock(double factor);  // > 0
    double now() override;
    Duration wait_until(double when) override;

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    double m_factor;
};

// Real time that leaps over motions: a machine as fast as the processor.
class LeapingClock : public Clock {
public:
    double now() override;
    Duration wait_until(double when) override;

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    double m_leapt = 0.0;
};

// Stands still until it is moved by hand. Not locked: move it on the thread that reads it.
class ManualClock : public Clock {
public:
    double now() override { return m_now; }
    Duration wait_until(double when) override;
    void advance(double seconds) { m_now += seconds; }

private:
    double m_now = 0.0;
};

}  // namespace zendrix::sim
