// A client at a serial line, with nothing but the line. Every wait is bounded.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <optional>
#include <string>

namespace zendrix::sim {

class SerialClient {
public:
    explicit SerialClient(const std::string& device) : m_port(m_io, device) {}

    void say(const std::string& line) { asio::write(m_port, asio::buffer(line + "\r\n")); }

    std::optional<std::string> line(std::chrono::milliseconds bound = std::chrono::seconds(20)) {
        std::size_t length = 0;
        asio::async_read_until(m_port, asio::dynamic_buffer(m_buffer), '\n',
                               [&](asio::error_code, std::size_t count) { length = count; });
        m_io.restart();
        m_io.run_for(bound);
        if (length == 0) {
            m_port.cancel();
            m_io.restart();
            m_io.run();
            return std::nullopt;
        }
        std::string found = m_buffer.substr(0, length - 2);
        m_buffer.erase(0, length);
        return found;
    }

    // The next line that is this one; the others before it are thrown away.
    bool reaches(const std::string& wanted) {
        while (const std::optional<std::string> next = line())
            if (*next == wanted) return true;
        return false;
    }

private:
    asio::io_context m_io;
    asio::serial_port m_port;
    std::string m_buffer;
};

}  // namespace zendrix::sim
