#include "connection.h"

#include <algorithm>
#include <exception>

#include "clientlog.h"
#include "idsource.h"

namespace serverdll {

namespace {

// How long the reader thread stands back while the callbacks are behind.
constexpr milliseconds pause{5};

}  // namespace

Connection::Connection(std::unique_ptr<Transport> transport, wire::LineSplitter splitter,
                       Dispatcher& dispatcher, ReplyStore& replies, const ClientOptions& options)
    : m_options(options),
      m_transport(std::move(transport)),
      m_dispatcher(dispatcher),
      m_requests(options),
      m_router(m_requests, dispatcher, replies),
      m_turn(options.reader_grace),
      m_splitter(std::move(splitter)),
      m_lastReceived(Clock::now()) {}

Connection::~Connection() {
    end();
    join();
}

void Connection::start() {
    std::string cause = m_router.route(m_splitter);
    if (!cause.empty()) lose(std::move(cause));
    m_reader = std::thread([this] { read_all(); });
}

void Connection::end() {
    m_ending.store(true);
    m_alive.store(false);
    m_requests.lose("the client is being closed");
    m_turn.end();
    m_transport->shutdown();
}

void Connection::join() {
    if (m_reader.joinable()) m_reader.join();
}

void Connection::perform(wire::RequestWriter& request, Exchange& exchange) {
    const auto id = static_cast<long>(request.id());  // ids fit everywhere
    if (!m_requests.add(id, exchange)) return;
    exchange.began = Clock::now();
    send(request.finish());
    wait(id, exchange);
}

void Connection::send(std::string_view line) {
    const os::LockGuard guard(m_writeLock);
    if (!m_writeFailure.empty()) return;
    const char* const cause = m_transport->write(line, m_options.write);
    if (cause == nullptr) return;
    m_writeFailure = cause;
    // The reading side finds the end and tells everybody.
    m_transport->shutdown();
}

void Connection::wait(long id, Exchange& exchange) {
    const Clock::time_point start = exchange.began;
    Clock::time_point now = start;
    while (!exchange.done.load(std::memory_order_acquire)) {
        const bool accepted = exchange.accepted.load(std::memory_order_acquire);
        const Clock::time_point end = start + (accepted ? m_options.transaction : m_options.answer);
        if (now >= end) return give_up(id, exchange);
        if (m_turn.take_or_wait(exchange.done, end)) {
            now = read_once(now, end);
            m_turn.give_back(now);
        } else {
            now = Clock::now();
        }
    }
    exchange.ended = now;
}

void Connection::give_up(long id, Exchange& exchange) {
    if (!m_requests.abandon(id, exchange)) return;
    exchange.failed = true;
    exchange.error = "the server doesn't answer";
}

void Connection::read_all() {
    while (m_turn.take_for_reader()) {
        Clock::time_point now = Clock::now();
        if (m_dispatcher.queued_bytes() > m_options.queue_pause) {
            m_lastReceived = now;
            m_turn.give_back_for_reader(now + pause);
            continue;
        }
        now = read_once(now, now + m_options.heartbeat);
        m_turn.give_back_for_reader(m_router.only_answers() ? now + m_turn.grace() : now);
    }
}

// Gives the time after it.
Clock::time_point Connection::read_once(Clock::time_point now, Clock::time_point end) {
    std::string cause;
    try {
        cause = read_some(end, now);
    } catch (const std::exception& error) {
        cause = error.what();
    }
    if (!cause.empty()) lose(std::move(cause));
    return now;
}

// Gives the cause if the connection can't go on.
std::string Connection::read_some(Clock::time_point end, Clock::time_point& now) {
    const milliseconds left = std::max(std::chrono::ceil<milliseconds>(end - now), milliseconds(0));
    const ReadResult read = m_transport->read(m_splitter.space(), std::min(left, until_heartbeat(now)));
    now = Clock::now();
    if (read.status == ReadStatus::ended) return read.cause;
    if (read.status == ReadStatus::timed_out) return check_heartbeat(now);
    m_lastReceived = now;
    m_pingIsOut = false;
    m_splitter.written(read.count);
    std::string cause = m_router.route(m_splitter);
    if (cause.empty() && m_dispatcher.queued_bytes() > m_options.queue_limit)
        cause = "the callbacks are too far behind";
    return cause;
}

milliseconds Connection::until_heartbeat(Clock::time_point now) const {
    const Clock::time_point due = (m_pingIsOut ? m_pinged : m_lastReceived) + m_options.heartbeat / 2;
    return std::max(std::chrono::ceil<milliseconds>(due - now), milliseconds(0));
}

// Half of the time without a word: ask. The other half without an answer: it is gone.
std::string Connection::check_heartbeat(Clock::time_point now) {
    if (until_heartbeat(now).count() > 0) return "";
    if (m_pingIsOut) return "the server is silent";
    wire::RequestWriter ping(process_ids().next(), "ping");
    m_requests.add_heartbeat(static_cast<long>(ping.id()));
    m_pingIsOut = true;
    m_pinged = now;
    send(ping.finish());
    return "";
}

void Connection::lose(std::string cause) {
    m_transport->shutdown();
    m_turn.end();
    if (m_ending.load() || !m_alive.exchange(false)) return;
    {
        const os::LockGuard guard(m_writeLock);
        if (!m_writeFailure.empty()) cause = m_writeFailure;
    }
    cause = "machine connection lost: " + cause;
    log_error("connection.cpp", __LINE__, cause);
    m_router.lose(m_requests.lose(cause));
}

}  // namespace serverdll
