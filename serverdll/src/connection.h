// A connection that said its hello: sends requests, waits for their answers, reads and keeps watch.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "linerouter.h"
#include "readingturn.h"
#include "request.h"
#include "transport.h"

namespace serverdll {

class Connection {
public:
    // `splitter` holds what came behind the hello.
    Connection(std::unique_ptr<Transport> transport, wire::LineSplitter splitter, Dispatcher& dispatcher,
               ReplyStore& replies, const ClientOptions& options);
    ~Connection();

    void start();
    // Fails all who wait and ends the reader thread's work. join() only when nobody is in perform().
    void end();
    void join();

    bool is_alive() const noexcept { return m_alive.load(std::memory_order_acquire); }

    // As of Transport.
    std::size_t block_part() const { return m_transport->block_part(); }

    // Sends the request and waits for what the exchange wants; its fields say how that went. Any thread.
    void perform(wire::RequestWriter& request, Exchange& exchange);

    // As of LineRouter.
    void ask_watch(long id, std::size_t axes) noexcept { m_router.ask_watch(id, axes); }

private:
    void send(std::string_view line);
    void wait(long id, Exchange& exchange);
    void give_up(long id, Exchange& exchange);
    void read_all();
    Clock::time_point read_once(Clock::time_point now, Clock::time_point end);
    std::string read_some(Clock::time_point end, Clock::time_point& now);
    std::string check_heartbeat(Clock::time_point now);
    milliseconds until_heartbeat(Clock::time_point now) const;
    void lose(std::string cause);

    const ClientOptions& m_options;
    std::unique_ptr<Transport> m_transport;
    Dispatcher& m_dispatcher;
    RequestTable m_requests;
    LineRouter m_router;
    ReadingTurn m_turn;
    std::thread m_reader;
    std::atomic<bool> m_alive = true;
    std::atomic<bool> m_ending = false;
    os::Mutex m_writeLock;
    std::string m_writeFailure OS_GUARDED_BY(m_writeLock);

    // Of whoever has the turn to read.
    wire::LineSplitter m_splitter;
    Clock::time_point m_lastReceived;
    Clock::time_point m_pinged;
    bool m_pingIsOut = false;
};

}  // namespace serverdll
