#include <asio/connect.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <atomic>
#include <optional>

#include "numbers.h"
#include "os/network.h"
#include "os/socket.h"
#include "transport.h"

namespace serverdll {

namespace {

using asio::ip::tcp;

struct Address {
    std::string host;
    std::string port;
};

// "host port"
Address split_address(const std::string& server) {
    const std::size_t blank = server.rfind(' ');
    std::int64_t port = 0;
    if (blank == std::string::npos || blank == 0 ||
        !wire::parse_integer(std::string_view(server).substr(blank + 1), 1, 65535, port)) {
        refuse_connection(server, "expected a host, a blank and a port from 1 to 65535");
    }
    return {server.substr(0, blank), server.substr(blank + 1)};
}

std::string cause_of(const asio::error_code& error) {
    return error == asio::error::connection_refused ? "connection refused" : error.message();
}

const char* cause_of(os::SocketStatus status) {
    switch (status) {
        case os::SocketStatus::closed:
            return "closed by the server";
        case os::SocketStatus::reset:
            return "reset by the server";
        case os::SocketStatus::timed_out:
            return "the server takes no requests";
        case os::SocketStatus::done:
        case os::SocketStatus::failed:
            break;
    }
    return "the network failed";
}

class TcpTransport : public Transport {
public:
    explicit TcpTransport(const ClientOptions& options) : m_end(Clock::now() + options.connect) {}

    // Tries the host's addresses in turn; an empty text is success.
    std::string connect(const tcp::resolver::results_type& addresses) {
        std::string cause = "the host has no address";
        for (const auto& entry : addresses) {
            cause = connect(entry.endpoint());
            if (cause.empty()) break;
        }
        return cause;
    }

    tcp::resolver::results_type resolve(const Address& address, asio::error_code& error) {
        return tcp::resolver(m_context).resolve(address.host, address.port, error);
    }

    ReadResult read(std::span<char> to, milliseconds at_most) override {
        // A request carries the acknowledgement of what was read before it; who reads on must not let the
        // server wait for one. So a query costs nothing for this.
        if (m_unacknowledged.load(std::memory_order_relaxed)) {
            m_unacknowledged.store(false, std::memory_order_relaxed);
            os::socket_acknowledge(handle());
        }
        const os::SocketResult result = os::socket_receive(handle(), to.data(), to.size(), at_most);
        if (result.status == os::SocketStatus::done) {
            m_unacknowledged.store(true, std::memory_order_relaxed);
            return {ReadStatus::bytes, result.count, ""};
        }
        if (result.status == os::SocketStatus::timed_out) return {};
        return {ReadStatus::ended, 0, cause_of(result.status)};
    }

    const char* write(std::string_view bytes, milliseconds at_most) override {
        m_unacknowledged.store(false, std::memory_order_relaxed);
        const os::SocketResult result = os::socket_send(handle(), bytes.data(), bytes.size(), at_most);
        return result.status == os::SocketStatus::done ? nullptr : cause_of(result.status);
    }

    void shutdown() noexcept override { os::socket_shutdown(handle()); }

private:
    os::SocketHandle handle() { return static_cast<os::SocketHandle>(m_socket.native_handle()); }

    std::string connect(const tcp::endpoint& endpoint) {
        std::optional<asio::error_code> result;
        m_socket = tcp::socket(m_context);
        m_socket.async_connect(endpoint, [&result](const asio::error_code& error) { result = error; });
        m_context.restart();
        m_context.run_until(m_end);
        if (!result) {
            asio::error_code ignored;
            m_socket.close(ignored);
            m_context.run();
            return "no answer in time";
        }
        return *result ? cause_of(*result) : prepare();
    }

    std::string prepare() {
        asio::error_code error;
        m_socket.set_option(tcp::no_delay(true), error);
        m_socket.native_non_blocking(false, error);
        os::socket_prepare(handle());
        return error ? error.message() : "";
    }

    const os::Network m_network{};
    asio::io_context m_context{1};
    tcp::socket m_socket{m_context};
    std::atomic<bool> m_unacknowledged = false;
    Clock::time_point m_end;
};

}  // namespace

std::unique_ptr<Transport> connect_tcp(const std::string& server, const ClientOptions& options) {
    const Address address = split_address(server);
    auto transport = std::make_unique<TcpTransport>(options);
    asio::error_code error;
    const tcp::resolver::results_type addresses = transport->resolve(address, error);
    if (error) refuse_connection(server, "unknown host");
    const std::string cause = transport->connect(addresses);
    if (!cause.empty()) refuse_connection(server, cause);
    return transport;
}

}  // namespace serverdll
