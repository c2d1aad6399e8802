// One connection: bytes from and to a client's socket around a conversation.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "linesplitter.h"
#include "protocol/conversation.h"
#include "protocol/transport.h"

namespace zendrix::sim {

class Session : public Transport, public std::enable_shared_from_this<Session> {
public:
    // `moved`: the machine may have something to do, or go on with; `gone`: called once, at the end.
    struct Callbacks {
        std::function<void()> moved;
        std::function<void(Session&)> gone;
    };

    Session(asio::ip::tcp::socket socket, Hub& hub, Callbacks callbacks);

    void start();
    // Takes nothing more in and closes when everything has left, or soon.
    void finish();

    std::string& out() override { return m_out; }
    void sent() override;
    bool is_congested() const override { return m_out.size() + m_leaving.size() > high_water; }
    void watch_every(std::chrono::milliseconds interval) override;
    void wait_for_lock(std::int64_t id, std::chrono::milliseconds patience) override;
    void close() override;
    void reset() override;
    void mute() override;
    void hold(std::chrono::milliseconds delay) override;

private:
    static constexpr std::size_t high_water = 1u << 20;   // scans and requests wait from here on
    static constexpr std::size_t hard_limit = 64u << 20;  // a client that takes nothing at all is sent away

    struct LockWait {
        std::int64_t id;
        std::chrono::steady_clock::time_point until;
    };

    void read();
    void received(std::size_t count);
    void take_lines();
    void write();
    void written();
    void watch_tick();
    void lock_tick();
    void stop_timers();
    void end();
    void end_by_reset();

    asio::ip::tcp::socket m_socket;
    asio::steady_timer m_watch_timer;
    asio::steady_timer m_lock_timer;
    asio::steady_timer m_hold_timer;
    asio::steady_timer m_finish_timer;
    Callbacks m_callbacks;
    wire::LineSplitter m_lines;
    std::string m_out;
    std::string m_leaving;  // given to the socket
    std::chrono::milliseconds m_watch_interval{0};
    std::deque<LockWait> m_lock_waits;
    bool m_is_write_posted = false;
    bool m_is_reading = false;
    bool m_is_held = false;
    bool m_is_finishing = false;
    bool m_is_mute = false;
    std::optional<std::size_t> m_last_words;  // out() ends there for good
    bool m_is_gone = false;
    std::unique_ptr<Conversation> m_conversation;  // null once the client has gone
};

}  // namespace zendrix::sim
