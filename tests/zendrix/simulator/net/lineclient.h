// A client with nothing but a socket, for tests of the server over loopback. Every wait is bounded.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace zendrix::sim {

class LineClient {
public:
    explicit LineClient(std::uint16_t port) {
        m_socket.connect({asio::ip::address_v4::loopback(), port});
        m_socket.set_option(asio::ip::tcp::no_delay(true));
    }

    void send(const std::string& bytes) { asio::write(m_socket, asio::buffer(bytes)); }
    void say(const std::string& line) { send(line + "\r\n"); }

    // The next line without its end; nothing if the connection ended or nothing came in time.
    std::optional<std::string> line(std::chrono::milliseconds bound = std::chrono::seconds(20)) {
        std::size_t length = 0;
        asio::async_read_until(m_socket, asio::dynamic_buffer(m_buffer), '\n',
                               [&](asio::error_code error, std::size_t count) {
                                   m_error = error;
                                   length = count;
                               });
        m_io.restart();
        m_io.run_for(bound);
        if (length == 0) {
            m_socket.cancel();
            m_io.restart();
            m_io.run();
            return std::nullopt;
        }
        std::string found = m_buffer.substr(0, length - 2);
        m_buffer.erase(0, length);
        return found;
    }

    // Lines up to and with this one, each ended by LF.
    std::string lines_until(const std::string& last) {
        std::string all;
        for (std::optional<std::string> next; (next = line());) {
            all += *next + "\n";
            if (*next == last) return all;
        }
        return all + "(no more)";
    }

    // Why the last line() came without a line.
    asio::error_code error() const { return m_error; }
    const std::string& rest() const { return m_buffer; }
    void close() { m_socket.close(); }

private:
    asio::io_context m_io;
    asio::ip::tcp::socket m_socket{m_io};
    std::string m_buffer;
    asio::error_code m_error;
};

}  // namespace zendrix::sim
