// What a conversation needs of the connection under it.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace zendrix::sim {

class Transport {
public:
    virtual ~Transport() = default;

    // Whole lines are appended here; sent() then sees to it that they leave.
    virtual std::string& out() = 0;
    virtual void sent() = 0;

    // The client hasn't taken enough of what it was sent: points and watch lines wait.
    virtual bool is_congested() const = 0;

    // Calls Conversation::send_watch that often from now on; zero: no more.
    virtual void watch_every(std::chrono::milliseconds interval) = 0;

    // Calls Conversation::lock_timed_out with this id after `patience`.
    virtual void wait_for_lock(std::int64_t id, std::chrono::milliseconds patience) = 0;

    // Ways to misbehave. None of them acts before the caller has returned.
    virtual void close() = 0;                                // after what is in out()
    virtual void reset() = 0;                                // hard, and out() is lost
    virtual void mute() = 0;                                 // open, but nothing comes any more
    virtual void hold(std::chrono::milliseconds delay) = 0;  // out() waits that long
};

}  // namespace zendrix::sim
