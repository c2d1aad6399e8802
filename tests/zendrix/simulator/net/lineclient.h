// A client with nothing but its end of the road, for tests of the server. Every wait is bounded.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace zendrix::sim {

// What a client does on any road of bytes that asio reads and writes.
template <class Road>
class LineClientOn {
public:
    template <class... Arguments>
    explicit LineClientOn(Arguments&&... arguments) : m_road(m_io, std::forward<Arguments>(arguments)...) {}

    void send(const std::string& bytes) { asio::write(m_road, asio::buffer(bytes)); }
    void say(const std::string& line) { send(line + "\r\n"); }

    // The next line without its end; nothing if the connection ended or nothing came in time.
    std::optional<std::string> line(std::chrono::milliseconds bound = std::chrono::seconds(20)) {
        std::size_t length = 0;
        asio::async_read_until(m_road, asio::dynamic_buffer(m_buffer), '\n',
                               [&](asio::error_code error, std::size_t count) {
                                   m_error = error;
                                   length = count;
                               });
        m_io.restart();
        m_io.run_for(bound);
        if (length == 0) {
            m_road.cancel();
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

    // The next line that is this one; the others before it are thrown away.
    bool reaches(const std::string& wanted) {
        while (const std::optional<std::string> next = line())
            if (*next == wanted) return true;
        return false;
    }

    // Why the last line() came without a line.
    asio::error_code error() const { return m_error; }
    const std::string& rest() const { return m_buffer; }
    void close() { m_road.close(); }

protected:
    asio::io_context m_io;
    Road m_road;

private:
    std::string m_buffer;
    asio::error_code m_error;
};

class LineClient : public LineClientOn<asio::ip::tcp::socket> {
public:
    explicit LineClient(std::uint16_t port) {
        m_road.connect({asio::ip::address_v4::loopback(), port});
        m_road.set_option(asio::ip::tcp::no_delay(true));
    }
};

}  // namespace zendrix::sim
