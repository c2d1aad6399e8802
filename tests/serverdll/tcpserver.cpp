#include <asio/ip/tcp.hpp>

#include "streampeer.h"

namespace test {

namespace {

using asio::ip::tcp;

class TcpPeer : public StreamPeer<tcp::socket> {
public:
    TcpPeer(asio::io_context& context, tcp::socket socket) : StreamPeer(context, std::move(socket)) {
        m_stream.set_option(tcp::no_delay(true));
    }

    void close() override {
        asio::error_code ignored;
        m_stream.shutdown(tcp::socket::shutdown_both, ignored);
        m_stream.close(ignored);
    }

    void reset() override {
        m_stream.set_option(asio::socket_base::linger(true, 0));
        asio::error_code ignored;
        m_stream.close(ignored);
    }
};

// Wine hides from a reader why a connection ended.
bool readers_see_a_reset() {
    asio::io_context context;
    tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
    tcp::socket ours(context);
    ours.connect(acceptor.local_endpoint());
    tcp::socket theirs = acceptor.accept();
    theirs.set_option(asio::socket_base::linger(true, 0));
    theirs.close();
    asio::error_code error;
    char byte = 0;
    ours.read_some(asio::buffer(&byte, 1), error);
    return error == asio::error::connection_reset;
}

class TcpServer : public Server {
public:
    explicit TcpServer(Script script)
        : Server(std::move(script)), m_acceptor(m_context, {asio::ip::address_v4::loopback(), 0}) {
        start([this] { return accept(); });
    }
    ~TcpServer() override { finish(); }

    std::string connection_string() const override {
        return "127.0.0.1 " + std::to_string(m_acceptor.local_endpoint().port());
    }

    std::string cause_of_reset() const override {
        static const bool is_seen = readers_see_a_reset();
        return is_seen ? Server::cause_of_reset() : cause_of_close();
    }

private:
    std::unique_ptr<Peer> accept() {
        tcp::socket socket(m_context);
        std::optional<asio::error_code> result;
        m_acceptor.async_accept(socket, [&](const asio::error_code& error) { result = error; });
        m_context.run_for(bound);
        if (!result) return nullptr;
        return std::make_unique<TcpPeer>(m_context, std::move(socket));
    }

    asio::io_context m_context;
    tcp::acceptor m_acceptor;
};

}  // namespace

std::unique_ptr<Server> serve_tcp(Script script) { return std::make_unique<TcpServer>(std::move(script)); }

}  // namespace test
