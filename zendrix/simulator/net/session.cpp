#include "net/session.h"

#include <algorithm>
#include <utility>

namespace zendrix::sim {

namespace {

constexpr std::chrono::milliseconds finish_patience(500);

}  // namespace

Session::Session(asio::ip::tcp::socket socket, Hub& hub, Callbacks callbacks)
    : m_socket(std::move(socket)),
      m_watch_timer(m_socket.get_executor()),
      m_lock_timer(m_socket.get_executor()),
      m_hold_timer(m_socket.get_executor()),
      m_finish_timer(m_socket.get_executor()),
      m_callbacks(std::move(callbacks)),
      m_conversation(std::make_unique<Conversation>(hub, *this)) {}

void Session::start() {
    asio::error_code ignored;
    m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    m_conversation->greet();
    write();
    read();
}

void Session::read() {
    if (m_is_reading || m_is_gone || m_is_finishing || is_congested()) return;
    m_is_reading = true;
    const std::span<char> space = m_lines.space();
    m_socket.async_read_some(asio::buffer(space.data(), space.size()),
                             [self = shared_from_this()](asio::error_code error, std::size_t count) {
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

void Session::take_lines() {
    std::string_view line;
    while (m_conversation && !m_is_mute && !m_is_finishing && !is_congested()) {
        switch (m_lines.next(line)) {
            case wire::Framing::none:
                return;
            case wire::Framing::line:
                m_conversation->request(line);
                break;
            case wire::Framing::too_long:
                m_conversation->over_long_request(line.substr(0, 64));
                break;
        }
    }
}

void Session::sent() {
    if (m_is_mute) m_out.clear();
    if (m_last_words) m_out.resize(std::min(m_out.size(), *m_last_words));
    if (m_out.size() > hard_limit) return reset();
    if (m_is_write_posted || !m_leaving.empty()) return;
    m_is_write_posted = true;
    asio::post(m_socket.get_executor(), [self = shared_from_this()] {
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
    asio::async_write(m_socket, asio::buffer(m_leaving),
                      [self = shared_from_this()](asio::error_code error, std::size_t) {
                          if (error) return self->end();
                          self->written();
                      });
}

void Session::written() {
    const bool was_congested = is_congested();
    m_leaving.clear();
    write();
    if (!was_congested || is_congested()) return;
    if (m_conversation) take_lines();
    read();
    m_callbacks.moved();
}

void Session::watch_every(std::chrono::milliseconds interval) {
    m_watch_interval = interval;
    m_watch_timer.cancel();
    if (interval.count() > 0) watch_tick();
}

void Session::watch_tick() {
    m_watch_timer.expires_after(m_watch_interval);
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
    asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->finish(); });
}

void Session::reset() {
    m_is_mute = true;
    asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->end_by_reset(); });
}

void Session::end_by_reset() {
    asio::error_code ignored;
    m_socket.set_option(asio::socket_base::linger(true, 0), ignored);
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
    asio::error_code ignored;
    m_socket.close(ignored);
    m_callbacks.moved();
    m_callbacks.gone(*this);
}

}  // namespace zendrix::sim
