#include <gtest/gtest.h>

#include <array>
#include <asio/posix/stream_descriptor.hpp>

#include "os/serial.h"
#include "streampeer.h"

namespace test {

namespace {

constexpr const char* asks_for_hello = "0000\thello";
constexpr const char* farewell = "0000\tbye";

class SerialPeer : public StreamPeer<asio::posix::stream_descriptor> {
public:
    SerialPeer(asio::io_context& context, os::PseudoTerminal& terminal)
        : StreamPeer(context, asio::posix::stream_descriptor(context, static_cast<int>(terminal.share()))),
          m_terminal(terminal) {}

    // The client's end shows in its farewell alone.
    std::optional<std::string> read_line() override {
        std::optional<std::string> line;
        do line = StreamPeer::read_line();
        while (line && line->empty());
        if (line == farewell) return std::nullopt;
        return line;
    }

    // A line in software blocks when nobody reads from it any more: the farewell ends that, too.
    void send(std::string_view bytes) override {
        bool is_written = false;
        // Step by step, as a cancel between two steps is seen by neither.
        const std::function<void()> write = [&] {
            is_written = bytes.empty() || has_farewell();
            if (is_written) return m_stream.cancel();
            m_stream.async_write_some(asio::buffer(bytes),
                                      [&](const asio::error_code& error, std::size_t count) {
                                          bytes.remove_prefix(error ? bytes.size() : count);
                                          write();
                                      });
        };
        const std::function<void()> listen = [&] {
            m_stream.async_read_some(asio::buffer(m_bytes),
                                     [&](const asio::error_code& error, std::size_t count) {
                                         m_input.append(m_bytes.data(), count);
                                         if (has_farewell())
                                             m_stream.cancel();
                                         else if (!error && !is_written)
                                             listen();
                                     });
        };
        listen();
        write();
        run();
    }

    // The line goes away, as a plug that is pulled.
    void close() override {
        asio::error_code ignored;
        m_stream.close(ignored);
        m_terminal.close();
    }
    void reset() override { close(); }

private:
    bool has_farewell() const { return m_input.find(farewell) != std::string::npos; }

    os::PseudoTerminal& m_terminal;
    std::array<char, 4096> m_bytes{};
};

class SerialServer : public Server {
public:
    explicit SerialServer(Script script) : Server(std::move(script)) {
        EXPECT_TRUE(m_terminal.open());
        m_device = m_terminal.device();
        start([this] { return accept(); });
    }
    ~SerialServer() override { finish(); }

    std::string connection_string() const override { return "COM:" + m_device; }
    std::string cause_of_close() const override { return "the serial line \"" + m_device + "\" is gone"; }
    std::string cause_of_reset() const override { return cause_of_close(); }

private:
    std::unique_ptr<Peer> accept() {
        auto peer = std::make_unique<SerialPeer>(m_context, m_terminal);
        return peer->read_line() == asks_for_hello ? std::move(peer) : nullptr;
    }

    asio::io_context m_context;
    os::PseudoTerminal m_terminal;
    std::string m_device;
};

}  // namespace

std::unique_ptr<Server> serve_serial(Script script) {
    return std::make_unique<SerialServer>(std::move(script));
}

std::vector<Transport> transports_of_the_system() { return {{"serialPosix", serve_serial, false, false}}; }

}  // namespace test
