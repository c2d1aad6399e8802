#include "net/server.h"

#include <asio.hpp>
#include <future>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>

#include "net/session.h"

namespace zendrix::sim {

class Server::Core {
public:
    Core(MachineDescription description, ServerOptions options, std::unique_ptr<Clock> clock)
        : m_options(std::move(options)),
          m_clock(std::move(clock)),
          m_acceptor(m_io),
          m_accept_timer(m_io),
          m_machine_timer(m_io),
          m_capabilities_timer(m_io),
          m_hub(description, *m_clock, m_options.faults, m_options.revision) {}

    ~Core() { stop(); }

    std::uint16_t start();
    void stop();
    void wait(const std::function<bool()>& cancelled);
    void invoke(const std::function<void(Hub&, Clock&)>& action);

private:
    void listen();
    void accept();
    void accept_later();
    void admit(asio::ip::tcp::socket socket);
    void dismiss(Session& session);
    void pump();
    void run_machine();
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
    asio::steady_timer m_machine_timer;
    asio::steady_timer m_capabilities_timer;
    Hub m_hub;
    std::set<std::shared_ptr<Session>> m_sessions;
    bool m_is_pump_posted = false;
    bool m_is_closing = false;
    std::thread m_thread;
    std::promise<void> m_done;
    std::future<void> m_is_done = m_done.get_future();
};

void Server::Core::listen() {
    const asio::ip::tcp::endpoint endpoint(asio::ip::make_address(m_options.address), m_options.port);
    m_acceptor.open(endpoint.protocol());
    m_acceptor.set_option(asio::socket_base::reuse_address(true));
    m_acceptor.bind(endpoint);
    m_acceptor.listen();
}

std::uint16_t Server::Core::start() {
    try {
        listen();
    } catch (const std::system_error& error) {
        throw std::runtime_error("cannot listen on " + m_options.address + ":" +
                                 std::to_string(m_options.port) + ": " + error.code().message());
    }
    accept();
    if (m_options.capabilities_change_every.count() > 0) change_capabilities();
    const std::uint16_t port = m_acceptor.local_endpoint().port();
    m_thread = std::thread([this] {
        m_io.run();
        m_done.set_value();
    });
    return port;
}

void Server::Core::accept() {
    m_acceptor.async_accept([this](asio::error_code error, asio::ip::tcp::socket socket) {
        if (m_is_closing || error == asio::error::operation_aborted) return;
        if (error) return accept_later();
        admit(std::move(socket));
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

void Server::Core::admit(asio::ip::tcp::socket socket) {
    log("client connected");
    auto session = std::make_shared<Session>(
        std::move(socket), m_hub,
        Session::Callbacks{[this] { run_machine(); }, [this](Session& gone) { dismiss(gone); }});
    m_sessions.insert(session);
    session->start();
}

void Server::Core::dismiss(Session& session) {
    log("client gone");
    m_sessions.erase(session.shared_from_this());
    if (m_options.once && !m_is_closing) close_down();
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
        if (error) return;
        m_hub.raise(Event::capabilities_changed);
        change_capabilities();
    });
}

// On the server's thread: whatever keeps it busy ends, and with it the thread.
void Server::Core::close_down() {
    m_is_closing = true;
    m_hub.halt();
    asio::error_code ignored;
    m_acceptor.close(ignored);
    m_accept_timer.cancel();
    m_machine_timer.cancel();
    m_capabilities_timer.cancel();
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
        pump();
        done.set_value();
    });
    done.get_future().wait();
}

Server::Server(MachineDescription description, ServerOptions options, std::unique_ptr<Clock> clock)
    : m_core(std::make_unique<Core>(std::move(description), std::move(options), std::move(clock))) {}

Server::~Server() = default;

std::uint16_t Server::start() { return m_core->start(); }
void Server::stop() { m_core->stop(); }
void Server::wait(const std::function<bool()>& cancelled) { m_core->wait(cancelled); }
void Server::invoke(const std::function<void(Hub& hub, Clock& clock)>& action) { m_core->invoke(action); }

}  // namespace zendrix::sim
