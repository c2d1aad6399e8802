#include "net/session.h"

#include <algorithm>
#include <utility>

namespace zendrix::sim {

namespace {

constexpr std::chrono::milliseconds finish_patience(500);
constexpr std::chrono::milliseconds watch_catch_up(200);

}  // namespace

// A line that is always there can't drop what waits in it when the next client comes, so little may wait.
Session::Bounds Session::bounds_of(Opening opening) {
    if (opening == Opening::asks) return {std::size_t{16} << 10, std::size_t{2} << 10};
    return {std::size_t{1} << 20, std::size_t(-1)};
}

Session::Session(asio::any_io_executor executor, std::unique_ptr<Stream> stream, Opening opening, Hub& hub,
                 Callbacks callbacks)
    : m_hub(hub),
      m_executor(std::move(executor)),
      m_stream(std::move(stream)),
      m_opening(opening),
      m_bounds(bounds_of(opening)),
      m_watch_timer(m_executor),
      m_lock_timer(m_executor),
      m_hold_timer(m_executor),
      m_finish_timer(m_executor),
      m_callbacks(std::move(callbacks)) {}

void Session::start() {
    if (m_opening == Opening::connects) begin_conversation();
    write();
    read();
}

void Session::begin_conversation() {
    m_conversation = std::make_unique<Conversation>(m_hub, *this);
    m_conversation->greet();
}

// Of what the client of before was to be told, nothing leaves any more but the piece that is on its way.
void Session::end_conversation() {
    m_conversation.reset();
    stop_timers();
    m_lock_waits.clear();
    m_out.clear();
    m_leaving.resize(std::min(m_leaving.size(), m_left + m_bounds.piece));
    m_is_mute = false;
    m_is_held = false;
    m_callbacks.moved();
}

void Session::read() {
    if (m_is_reading || m_is_gone || m_is_finishing || is_congested()) return;
    m_is_reading = true;
    const std::span<char> space = m_lines.space();
    m_stream->read(space, [self = shared_from_this()](asio::error_code error, std::size_t count) {
        self->m_is_reading = false;
        if (error) return self->finish();
        self->received(count);
    });
}

void Session::received(std::size_t count) {
    m_lines.written(count);
    take_lines();
    write();
    read();
    m_callbacks.moved();
}

bool Session::takes_lines() const {
    if (m_is_finishing || is_congested()) return false;
    return m_opening == Opening::asks || (m_conversation && !m_is_mute);
}

void Session::take_lines() {
    std::string_view line;
    while (takes_lines()) {
        switch (m_lines.next(line)) {
            case wire::Framing::none:
                return;
            case wire::Framing::line:
                take_line(line);
                break;
            case wire::Framing::too_long:
                if (m_conversation) m_conversation->over_long_request(line.substr(0, 64));
                break;
        }
    }
}

void Session::take_line(std::string_view line) {
    if (m_hub.is_leaving()) return;  // nobody is there
    if (m_opening == Opening::asks && opens_or_ends(line)) return;
    if (m_conversation && !m_is_mute) m_conversation->request(line);
}

bool Session::opens_or_ends(std::string_view line) {
    if (line == "0000\thello") {
        end_conversation();
        m_out = "\r\n";  // ends what was cut
        begin_conversation();
        return true;
    }
    if (line != "0000\tbye") return false;
    end_conversation();
    return true;
}

void Session::sent() {
    if (m_is_mute) m_out.clear();
    if (m_last_words) m_out.resize(std::min(m_out.size(), *m_last_words));
    if (m_out.size() > hard_limit) return reset();
    if (m_is_write_posted || !m_leaving.empty()) return;
    m_is_write_posted = true;
    asio::post(m_executor, [self = shared_from_this()] {
        self->m_is_write_posted = false;
        self->write();
    });
}

void Session::write() {
    if (!m_leaving.empty() || m_is_held || m_is_gone) return;
    if (m_out.empty()) {
        if (m_is_finishing && !m_is_mute) end();
        return;
    }
    m_leaving.swap(m_out);
    if (m_last_words) m_last_words = 0;
    write_piece();
}

void Session::write_piece() {
    const std::string_view piece = std::string_view(m_leaving).substr(m_left, m_bounds.piece);
    m_stream->write(piece, [self = shared_from_this()](asio::error_code error, std::size_t count) {
        if (error) return self->end();
        self->m_left += count;
        if (self->m_left < self->m_leaving.size()) return self->write_piece();
        self->written();
    });
}

void Session::written() {
    const bool was_congested = is_congested();
    m_leaving.clear();
    m_left = 0;
    write();
    if (!was_congested || is_congested()) return;
    // What the client asks comes in before the next of its block goes out, or it would wait for the whole.
    take_lines();
    read();
    if (m_conversation) m_conversation->go_on();
    m_callbacks.moved();
}

void Session::watch_every(std::chrono::milliseconds interval) {
    m_watch_interval = interval;
    m_watch_timer.cancel();
    m_watch_due = std::chrono::steady_clock::now();
    if (interval.count() > 0) watch_tick();
}

// A tick that comes late doesn't delay the next; what a long hold-up left out is gone.
void Session::watch_tick() {
    const auto oldest = std::chrono::steady_clock::now() - watch_catch_up;
    m_watch_due = std::max(m_watch_due + m_watch_interval, oldest);
    m_watch_timer.expires_at(m_watch_due);
    m_watch_timer.async_wait([self = shared_from_this()](asio::error_code error) {
        if (error || !self->m_conversation) return;
        self->m_conversation->send_watch();
        self->watch_tick();
    });
}

// Everyone has the same patience, so whoever began to wait first is the first to lose it.
void Session::wait_for_lock(std::int64_t id, std::chrono::milliseconds patience) {
    m_lock_waits.push_back({id, std::chrono::steady_clock::now() + patience});
    if (m_lock_waits.size() == 1) lock_tick();
}

void Session::lock_tick() {
    m_lock_timer.expires_at(m_lock_waits.front().until);
    m_lock_timer.async_wait([self = shared_from_this()](asio::error_code error) {
        if (error || !self->m_conversation) return;
        self->m_conversation->lock_timed_out(self->m_lock_waits.front().id);
        self->m_lock_waits.pop_front();
        if (!self->m_lock_waits.empty()) self->lock_tick();
    });
}

void Session::close() {
    m_last_words = m_out.size();
    asio::post(m_executor, [self = shared_from_this()] { self->finish(); });
}

void Session::reset() {
    m_is_mute = true;
    asio::post(m_executor, [self = shared_from_this()] { self->end_by_reset(); });
}

void Session::end_by_reset() {
    m_stream->reset();
    end();
}

void Session::mute() { m_is_mute = true; }

void Session::hold(std::chrono::milliseconds delay) {
    m_is_held = true;
    m_hold_timer.expires_after(delay);
    m_hold_timer.async_wait([self = shared_from_this()](asio::error_code error) {
        if (error) return;
        self->m_is_held = false;
        self->write();
    });
}

void Session::finish() {
    if (m_is_gone) return;
    m_is_finishing = true;
    m_conversation.reset();
    m_callbacks.moved();
    m_finish_timer.expires_after(finish_patience);
    m_finish_timer.async_wait([self = shared_from_this()](asio::error_code error) {
        if (!error) self->end();
    });
    stop_timers();
    m_is_held = false;
    write();
}

void Session::fall_silent() {
    if (m_opening == Opening::connects) return finish();
    m_conversation.reset();
    stop_timers();
    m_lock_waits.clear();
    m_is_mute = false;
    m_is_held = false;
    write();
}

void Session::stop_timers() {
    m_watch_timer.cancel();
    m_lock_timer.cancel();
    m_hold_timer.cancel();
}

void Session::end() {
    if (std::exchange(m_is_gone, true)) return;
    m_conversation.reset();
    stop_timers();
    m_finish_timer.cancel();
    m_stream->close();
    m_callbacks.moved();
    m_callbacks.gone(*this);
}

}  // namespace zendrix::sim
