#include "net/server.h"

#include <asio.hpp>
#include <future>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>

#include "net/session.h"
#include "os/error.h"
#include "os/serial.h"
#include "os/socket.h"

namespace zendrix::sim {

class Server::Core {
public:
    Core(MachineDescription description, ServerOptions options, std::unique_ptr<Clock> clock)
        : m_options(std::move(options)),
          m_clock(std::move(clock)),
          m_acceptor(m_io),
          m_accept_timer(m_io),
          m_work(asio::make_work_guard(m_io)),
          m_machine_timer(m_io),
          m_capabilities_timer(m_io),
          m_restart_timer(m_io),
          m_hub(description, *m_clock, m_options.faults, m_options.revision) {}

    ~Core() { stop(); }

    std::uint16_t start();
    std::string place() const { return m_place; }
    std::shared_ptr<MemoryLink> connect();
    void stop();
    void wait(const std::function<bool()>& cancelled);
    void invoke(const std::function<void(Hub&, Clock&)>& action);

private:
    void open_road();
    void listen();
    void accept();
    void accept_later();
    void open_line();
    asio::serial_port line();
    void open_line_later();
    void admit(std::unique_ptr<Stream> stream, Session::Opening opening);
    void dismiss(Session& session);
    void pump();
    void look_after();
    void run_machine();
    void go_away();
    void wait_to_come_back();
    void come_back();
    void change_capabilities();
    void close_down();
    void log(const std::string& text) const {
        if (m_options.log) m_options.log(text);
    }

    ServerOptions m_options;
    std::unique_ptr<Clock> m_clock;
    asio::io_context m_io{1};
    asio::ip::tcp::acceptor m_acceptor;
    asio::steady_timer m_accept_timer;
    asio::executor_work_guard<asio::io_context::executor_type> m_work;
    os::PseudoTerminal m_terminal;
    std::string m_place;
    asio::steady_timer m_machine_timer;
    asio::steady_timer m_capabilities_timer;
    asio::steady_timer m_restart_timer;
    Hub m_hub;
    std::set<std::shared_ptr<Session>> m_sessions;
    bool m_is_pump_posted = false;
    bool m_is_closing = false;
    bool m_is_away = false;
    double m_back_at = 0.0;  // machine time
    struct Arrival {
        std::unique_ptr<Stream> stream;
        Session::Opening opening;
    };
    std::vector<Arrival> m_arrivals;  // that came while it was away
    std::thread m_thread;
    std::promise<void> m_done;
    std::future<void> m_is_done = m_done.get_future();
};

void Server::Core::listen() {
    const asio::ip::tcp::endpoint endpoint(asio::ip::make_address(m_options.address), m_options.port);
    m_acceptor.open(endpoint.protocol());
    os::socket_listen_alone(os::SocketHandle(m_acceptor.native_handle()));
    m_acceptor.bind(endpoint);
    m_acceptor.listen();
    m_place = m_options.address + ":" + std::to_string(m_acceptor.local_endpoint().port());
    accept();
}

void Server::Core::open_road() {
    m_place = m_options.address + ":" + std::to_string(m_options.port);
    switch (m_options.road) {
        case Road::tcp:
            return listen();
        case Road::serial:
            m_place = os::serial_device(m_options.device);
            return open_line();
        case Road::terminal:
            m_place = "a pseudo-terminal";
            if (!m_terminal.open()) throw std::system_error(os::last_error(), std::system_category());
            m_place = m_terminal.device();
            return open_line();
        case Road::none:
            m_place = "this process";
    }
}

std::uint16_t Server::Core::start() {
    try {
        open_road();
    } catch (const std::system_error& error) {
        throw std::runtime_error("cannot listen on " + m_place + ": " + error.code().message());
    }
    if (m_options.capabilities_change_every.count() > 0) change_capabilities();
    m_thread = std::thread([this] {
        m_io.run();
        m_done.set_value();
    });
    return m_options.road == Road::tcp ? m_acceptor.local_endpoint().port() : std::uint16_t{0};
}

std::shared_ptr<MemoryLink> Server::Core::connect() {
    auto link = std::make_shared<MemoryLink>(m_io.get_executor());
    asio::post(m_io, [this, stream = std::make_unique<MemoryStream>(link)]() mutable {
        if (!m_is_closing) admit(std::move(stream), Session::Opening::connects);
    });
    return link;
}

void Server::Core::accept() {
    m_acceptor.async_accept([this](asio::error_code error, asio::ip::tcp::socket socket) {
        if (m_is_closing || error == asio::error::operation_aborted) return;
        if (error) return accept_later();
        admit(std::make_unique<TcpStream>(std::move(socket)), Session::Opening::connects);
        accept();
    });
}

// Out of descriptors, most likely: clients that go give some back.
void Server::Core::accept_later() {
    m_accept_timer.expires_after(std::chrono::milliseconds(100));
    m_accept_timer.async_wait([this](asio::error_code error) {
        if (!error) accept();
    });
}

// A line that is there from the begin has to be had; one that went away may come back.
void Server::Core::open_line() {
    admit(std::make_unique<StreamOf<asio::serial_port>>(line()), Session::Opening::asks);
}

asio::serial_port Server::Core::line() {
    asio::serial_port port(m_io);
    if (m_options.road == Road::terminal) {
        port.assign(asio::serial_port::native_handle_type(m_terminal.share()));
        return port;
    }
    port.open(m_place);
    port.set_option(asio::serial_port::baud_rate(m_options.baud));
    return port;
}

void Server::Core::open_line_later() {
    m_accept_timer.expires_after(std::chrono::milliseconds(100));
    m_accept_timer.async_wait([this](asio::error_code error) {
        if (error || m_is_closing) return;  // one that was due already is no longer cancelled
        try {
            open_line();
        } catch (const std::system_error&) {
            open_line_later();
        }
    });
}

void Server::Core::admit(std::unique_ptr<Stream> stream, Session::Opening opening) {
    if (m_is_away) return m_arrivals.push_back({std::move(stream), opening});
    log(opening == Session::Opening::asks ? "line open" : "client connected");
    auto session = std::make_shared<Session>(
        m_io.get_executor(), std::move(stream), opening, m_hub,
        Session::Callbacks{[this] { look_after(); }, [this](Session& gone) { dismiss(gone); }});
    m_sessions.insert(session);
    session->start();
}

void Server::Core::dismiss(Session& session) {
    const bool was_line = session.opening() == Session::Opening::asks;
    log(was_line ? "line gone" : "client gone");
    m_sessions.erase(session.shared_from_this());
    if (m_is_closing) return;
    if (m_options.once) return close_down();
    if (was_line) open_line_later();
}

void Server::Core::look_after() {
    if (!m_hub.is_leaving()) return run_machine();
    asio::post(m_io, [this] { go_away(); });
}

void Server::Core::go_away() {
    if (m_is_closing || m_is_away || !m_hub.is_leaving()) return;
    log("machine restarts");
    m_is_away = true;
    m_back_at = m_clock->now() + m_hub.restart_seconds();
    const auto sessions = m_sessions;
    for (const auto& session : sessions) session->fall_silent();
    wait_to_come_back();
}

void Server::Core::wait_to_come_back() {
    if (m_is_closing) return;
    if (m_clock->now() >= m_back_at) return come_back();
    const Clock::Duration rest = m_clock->wait_until(m_back_at);
    m_restart_timer.expires_after(std::chrono::duration_cast<std::chrono::nanoseconds>(rest));
    m_restart_timer.async_wait([this](asio::error_code error) {
        if (!error) wait_to_come_back();
    });
}

void Server::Core::come_back() {
    m_hub.restart();
    m_is_away = false;
    for (Arrival& arrival : std::exchange(m_arrivals, {})) admit(std::move(arrival.stream), arrival.opening);
}

// Something may have changed for the machine: it looks as soon as what runs now has returned.
void Server::Core::run_machine() {
    if (!m_hub.machine().is_busy() || std::exchange(m_is_pump_posted, true)) return;
    asio::post(m_io, [this] {
        m_is_pump_posted = false;
        pump();
    });
}

void Server::Core::pump() {
    if (!m_hub.advance() || m_is_closing) return;
    const Clock::Duration rest = m_hub.rest();
    if (rest <= Clock::Duration::zero()) return run_machine();
    m_machine_timer.expires_after(std::chrono::duration_cast<std::chrono::nanoseconds>(rest));
    m_machine_timer.async_wait([this](asio::error_code error) {
        if (!error) pump();
    });
}

void Server::Core::change_capabilities() {
    m_capabilities_timer.expires_after(m_options.capabilities_change_every);
    m_capabilities_timer.async_wait([this](asio::error_code error) {
        if (error || m_is_closing) return;  // one that was due already is no longer cancelled
        m_hub.raise(Event::capabilities_changed);
        change_capabilities();
    });
}

// On the server's thread: whatever keeps it busy ends, and with it the thread.
void Server::Core::close_down() {
    m_is_closing = true;
    m_work.reset();
    m_hub.halt();
    asio::error_code ignored;
    m_acceptor.close(ignored);
    m_accept_timer.cancel();
    m_machine_timer.cancel();
    m_capabilities_timer.cancel();
    m_restart_timer.cancel();
    m_arrivals.clear();
    const auto sessions = m_sessions;
    for (const auto& session : sessions) session->finish();
}

void Server::Core::stop() {
    if (!m_thread.joinable()) return;
    asio::post(m_io, [this] {
        if (!m_is_closing) close_down();
    });
    m_thread.join();
}

void Server::Core::wait(const std::function<bool()>& cancelled) {
    while (!cancelled()) {
        if (m_is_done.wait_for(std::chrono::milliseconds(100)) == std::future_status::ready) return;
    }
}

void Server::Core::invoke(const std::function<void(Hub&, Clock&)>& action) {
    std::promise<void> done;
    asio::post(m_io, [&] {
        action(m_hub, *m_clock);
        if (m_is_away) wait_to_come_back();
        pump();
        done.set_value();
    });
    done.get_future().wait();
}

Server::Server(MachineDescription description, ServerOptions options, std::unique_ptr<Clock> clock)
    : m_core(std::make_unique<Core>(std::move(description), std::move(options), std::move(clock))) {}

Server::~Server() = default;

std::uint16_t Server::start() { return m_core->start(); }
std::string Server::place() const { return m_core->place(); }
std::shared_ptr<MemoryLink> Server::connect() { return m_core->connect(); }
void Server::stop() { m_core->stop(); }
void Server::wait(const std::function<bool()>& cancelled) { m_core->wait(cancelled); }
void Server::invoke(const std::function<void(Hub& hub, Clock& clock)>& action) { m_core->invoke(action); }

}  // namespace zendrix::sim
