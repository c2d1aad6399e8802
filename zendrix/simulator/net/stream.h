// The road of bytes under a session: one connection, whatever it runs over. The server's thread.
#pragma once

#include <asio.hpp>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

namespace zendrix::sim {

class Stream {
public:
    using Done = std::function<void(asio::error_code, std::size_t)>;

    virtual ~Stream() = default;

    // Both call back once, later, also when the stream is closed meanwhile. One read and one write at a time.
    virtual void read(std::span<char> to, Done done) = 0;       // what is there, at least a byte
    virtual void write(std::string_view bytes, Done done) = 0;  // all; they stay where they are until then

    virtual void close() = 0;
    // Hard: what hasn't left is lost.
    virtual void reset() = 0;
};

// Over anything that asio reads and writes.
template <class AsioStream>
class StreamOf : public Stream {
public:
    explicit StreamOf(AsioStream stream) : m_stream(std::move(stream)) {}

    void read(std::span<char> to, Done done) override {
        m_stream.async_read_some(asio::buffer(to.data(), to.size()), std::move(done));
    }

    void write(std::string_view bytes, Done done) override {
        asio::async_write(m_stream, asio::buffer(bytes), std::move(done));
    }

    void close() override {
        asio::error_code ignored;
        m_stream.close(ignored);
    }

    void reset() override { close(); }

protected:
    AsioStream m_stream;
};

class TcpStream : public StreamOf<asio::ip::tcp::socket> {
public:
    explicit TcpStream(asio::ip::tcp::socket socket) : StreamOf(std::move(socket)) {
        asio::error_code ignored;
        m_stream.set_option(asio::ip::tcp::no_delay(true), ignored);
    }

    void reset() override {
        asio::error_code ignored;
        m_stream.set_option(asio::socket_base::linger(true, 0), ignored);
        close();
    }
};

}  // namespace zendrix::sim
