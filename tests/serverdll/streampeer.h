// The server's end of a connection that asio reads and writes.
#pragma once

#include <array>
#include <asio/io_context.hpp>
#include <asio/write.hpp>
#include <stdexcept>
#include <utility>

#include "lineserver.h"

namespace test {

template <class Stream>
class StreamPeer : public Peer {
public:
    StreamPeer(asio::io_context& context, Stream stream) : m_stream(std::move(stream)), m_context(context) {}

    void send(std::string_view bytes) override {
        asio::error_code result;
        asio::async_write(m_stream, asio::buffer(bytes),
                          [&](const asio::error_code& error, std::size_t) { result = error; });
        run();
        if (result && result != asio::error::broken_pipe && result != asio::error::connection_reset) {
            throw std::runtime_error("the fake server can't write: " + result.message());
        }
    }

    std::optional<std::string> read_line() override {
        std::size_t end = 0;
        for (std::size_t seen = 0; (end = m_input.find("\r\n", seen)) == std::string::npos;) {
            seen = m_input.size() - (m_input.ends_with('\r') ? 1 : 0);
            if (!read_more()) return std::nullopt;
        }
        std::string line = m_input.substr(0, end);
        m_input.erase(0, end + 2);
        return line;
    }

    std::size_t send_some(std::string_view bytes) override {
        asio::error_code error;
        m_stream.non_blocking(true);
        const std::size_t count = m_stream.write_some(asio::buffer(bytes), error);
        return error ? 0 : count;
    }

protected:
    bool read_more() {
        std::size_t got = 0;
        m_stream.async_read_some(asio::buffer(m_more),
                                 [&](const asio::error_code&, std::size_t count) { got = count; });
        run();
        m_input.append(m_more.data(), got);
        return got > 0;
    }

    // Until nothing is under way any more.
    void run() {
        m_context.restart();
        m_context.run_for(std::chrono::seconds(10));
        if (m_context.stopped()) return;
        m_stream.cancel();
        m_context.run();
        throw std::runtime_error("the fake server waits for too long");
    }

    Stream m_stream;
    std::string m_input;

private:
    asio::io_context& m_context;
    std::array<char, 65536> m_more{};
};

}  // namespace test
