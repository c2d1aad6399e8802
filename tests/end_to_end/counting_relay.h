// Stands between a client and a machine server and counts: request lines out, and the pieces in which answers
// come back.
#pragma once

#include <asio.hpp>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

class CountingRelay {
public:
    explicit CountingRelay(std::uint16_t server_port) : m_server_port(server_port) {
        m_acceptor.async_accept(m_client, [this](asio::error_code error) {
            if (!error) connect();
        });
        m_thread = std::thread([this] { m_io.run(); });
    }

    ~CountingRelay() {
        m_io.stop();
        m_thread.join();
    }

    CountingRelay(const CountingRelay&) = delete;
    CountingRelay& operator=(const CountingRelay&) = delete;

    std::uint16_t port() const { return m_acceptor.local_endpoint().port(); }

    // What went through since the last call. The client must be waiting for nothing.
    struct Count {
        std::vector<std::string> requests;  // without ids
        std::size_t pieces_out = 0;
        std::size_t pieces_in = 0;
    };
    Count take() {
        const std::lock_guard guard(m_lock);
        return std::exchange(m_count, {});
    }

private:
    using Socket = asio::ip::tcp::socket;
    using Buffer = std::vector<char>;

    void connect() {
        asio::error_code ignored;
        m_server.connect({asio::ip::address_v4::loopback(), m_server_port}, ignored);
        for (Socket* socket : {&m_client, &m_server})
            socket->set_option(asio::ip::tcp::no_delay(true), ignored);
        pass(m_client, m_server, m_from_client, true);
        pass(m_server, m_client, m_from_server, false);
    }

    void pass(Socket& from, Socket& to, Buffer& buffer, bool is_out) {
        from.async_read_some(asio::buffer(buffer),
                             [&, is_out, this](asio::error_code error, std::size_t count) {
                                 asio::error_code failed;
                                 if (!error) {
                                     note({buffer.data(), count}, is_out);
                                     asio::write(to, asio::buffer(buffer.data(), count), failed);
                                 }
                                 if (!error && !failed) return pass(from, to, buffer, is_out);
                                 to.shutdown(Socket::shutdown_both, failed);
                             });
    }

    void note(std::string_view bytes, bool is_out) {
        const std::lock_guard guard(m_lock);
        ++(is_out ? m_count.pieces_out : m_count.pieces_in);
        if (!is_out) return;
        for (std::size_t tab = 0; (tab = bytes.find('\t')) != std::string_view::npos;) {
            bytes.remove_prefix(tab + 1);
            m_count.requests.emplace_back(bytes.substr(0, bytes.find('\r')));
        }
    }

    std::uint16_t m_server_port;
    asio::io_context m_io{1};
    asio::ip::tcp::acceptor m_acceptor{m_io, {asio::ip::address_v4::loopback(), 0}};
    Socket m_client{m_io};
    Socket m_server{m_io};
    Buffer m_from_client = Buffer(1 << 20);
    Buffer m_from_server = Buffer(1 << 20);
    std::mutex m_lock;
    Count m_count;
    std::thread m_thread;
};
