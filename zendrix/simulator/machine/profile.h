// Travel in time over one stretch, from rest to rest: speeding up, cruising, slowing down.
#pragma once

namespace zendrix::sim {

// Lengths, speeds and accelerations in any one unit; time in seconds from the begin.
class Profile {
public:
    Profile() = default;  // no travel at all

    // A length of 0 takes no time. Speed and acceleration are > 0.
    Profile(double length, double speed, double acceleration);

    // The way to a stand from this speed.
    static Profile slow_down(double speed, double acceleration);

    double length() const { return m_length; }
    double duration() const { return m_up + m_cruise + m_down; }

    // Both hold the begin's value before the begin and the end's behind the end.
    double position(double time) const;
    double speed(double time) const;

    // When this position, 0 to length, is reached.
    double time(double position) const;

private:
    double m_length = 0.0;
    double m_peak = 0.0;  // the speed while cruising
    double m_acceleration = 1.0;
    double m_up = 0.0;  // seconds of each phase
    double m_cruise = 0.0;
    double m_down = 0.0;
};

}  // namespace zendrix::sim
