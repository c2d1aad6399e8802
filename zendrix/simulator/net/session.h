// One connection: bytes from and to a client around a conversation.
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
#include "net/stream.h"
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

    // What a client has to do for its hello.
    enum class Opening {
        connects,  // a connection is a conversation
        asks       // the road is always there: conversations begin with "hello" and end with "bye"
    };

    Session(asio::any_io_executor executor, std::unique_ptr<Stream> stream, Opening opening, Hub& hub,
            Callbacks callbacks);

    void start();
    Opening opening() const { return m_opening; }
    // Takes nothing more in and closes when everything has left, or soon.
    void finish();
    // The machine goes away: as finish(), but a road that is always there just falls silent.
    void fall_silent();

    std::string& out() override { return m_out; }
    void sent() override;
    bool is_congested() const override { return m_out.size() + m_leaving.size() > m_bounds.high_water; }
    void watch_every(std::chrono::milliseconds interval) override;
    void wait_for_lock(std::int64_t id, std::chrono::milliseconds patience) override;
    void close() override;
    void reset() override;
    void mute() override;
    void hold(std::chrono::milliseconds delay) override;

private:
    static constexpr std::size_t hard_limit = 64u << 20;  // a client that takes nothing at all is sent away

    struct Bounds {
        std::size_t high_water;  // scans and requests wait from here on
        std::size_t piece;       // that is handed to the stream at once
    };
    static Bounds bounds_of(Opening opening);

    struct LockWait {
        std::int64_t id;
        std::chrono::steady_clock::time_point until;
    };

    void read();
    void received(std::size_t count);
    void take_lines();
    void take_line(std::string_view line);
    bool opens_or_ends(std::string_view line);
    bool takes_lines() const;
    void begin_conversation();
    void end_conversation();
    void write();
    void write_piece();
    void written();
    void watch_tick();
    void lock_tick();
    void stop_timers();
    void end();
    void end_by_reset();

    Hub& m_hub;
    const asio::any_io_executor m_executor;
    const std::unique_ptr<Stream> m_stream;
    const Opening m_opening;
    const Bounds m_bounds;
    asio::steady_timer m_watch_timer;
    asio::steady_timer m_lock_timer;
    asio::steady_timer m_hold_timer;
    asio::steady_timer m_finish_timer;
    Callbacks m_callbacks;
    wire::LineSplitter m_lines;
    std::string m_out;
    std::string m_leaving;   // given to the stream
    std::size_t m_left = 0;  // of m_leaving
    std::chrono::milliseconds m_watch_interval{0};
    std::chrono::steady_clock::time_point m_watch_due;
    std::deque<LockWait> m_lock_waits;
    bool m_is_write_posted = false;
    bool m_is_reading = false;
    bool m_is_held = false;
    bool m_is_finishing = false;
    bool m_is_mute = false;
    std::optional<std::size_t> m_last_words;  // out() ends there for good
    bool m_is_gone = false;
    std::unique_ptr<Conversation> m_conversation;  // null while there is no client
};

}  // namespace zendrix::sim
