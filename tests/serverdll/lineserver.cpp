#include "lineserver.h"

#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/read_until.hpp>
#include <asio/write.hpp>
#include <optional>
#include <stdexcept>
#include <thread>

namespace test {

namespace {

using asio::ip::tcp;

constexpr std::chrono::seconds bound{10};

class TcpPeer : public Peer {
public:
    TcpPeer(asio::io_context& context, tcp::socket socket) : m_context(context), m_socket(std::move(socket)) {
        m_socket.set_option(tcp::no_delay(true));
    }

    void send(std::string_view bytes) override {
        asio::error_code result;
        asio::async_write(m_socket, asio::buffer(bytes),
                          [&](const asio::error_code& error, std::size_t) { result = error; });
        run();
        if (result && result != asio::error::broken_pipe && result != asio::error::connection_reset) {
            throw std::runtime_error("the fake server can't write: " + result.message());
        }
    }

    Request next() override {
        for (;;) {
            const std::optional<std::string> line = read_line();
            if (!line) throw std::runtime_error("the client has closed, a request was expected");
            const std::size_t tab = line->find('\t');
            if (tab == std::string::npos) throw std::runtime_error("not a request: " + *line);
            Request request{line->substr(0, tab), line->substr(tab + 1)};
            if (request.words != "ping" || tells_ping) return request;
            if (answers_ping) answer(request, {"ready"});
        }
    }

    bool wait_for_close() override {
        while (read_line()) continue;
        return true;
    }

    void close() override {
        asio::error_code ignored;
        m_socket.shutdown(tcp::socket::shutdown_both, ignored);
        m_socket.close(ignored);
    }

    void reset() override {
        m_socket.set_option(asio::socket_base::linger(true, 0));
        asio::error_code ignored;
        m_socket.close(ignored);
    }

    std::size_t send_some(std::string_view bytes) override {
        asio::error_code error;
        m_socket.non_blocking(true);
        const std::size_t count = m_socket.write_some(asio::buffer(bytes), error);
        return error ? 0 : count;
    }

private:
    void run() {
        m_context.restart();
        m_context.run_for(bound);
        if (m_context.stopped()) return;
        m_socket.cancel();
        m_context.run();
        throw std::runtime_error("the fake server waits for too long");
    }

    std::optional<std::string> read_line() {
        asio::error_code result;
        asio::async_read_until(m_socket, asio::dynamic_buffer(m_input), "\r\n",
                               [&](const asio::error_code& error, std::size_t) { result = error; });
        run();
        if (result) return std::nullopt;
        const std::size_t end = m_input.find("\r\n");
        std::string line = m_input.substr(0, end);
        m_input.erase(0, end + 2);
        return line;
    }

    asio::io_context& m_context;
    tcp::socket m_socket;
    std::string m_input;
};

class TcpServer : public Server {
public:
    explicit TcpServer(Script script) : m_acceptor(m_context, {asio::ip::address_v4::loopback(), 0}) {
        m_thread = std::thread([this, play = std::move(script)] { run(play); });
    }

    ~TcpServer() override {
        if (!m_thread.joinable()) return;
        m_thread.join();
        if (!m_failure.empty()) ADD_FAILURE() << m_failure;
    }

    std::string connection_string() const override {
        return "127.0.0.1 " + std::to_string(m_acceptor.local_endpoint().port());
    }

    void finish() override {
        m_thread.join();
        EXPECT_EQ(m_failure, "");
    }

private:
    void run(const Script& script) {
        try {
            tcp::socket socket(m_context);
            std::optional<asio::error_code> result;
            m_acceptor.async_accept(socket, [&](const asio::error_code& error) { result = error; });
            m_context.run_for(bound);
            if (!result) throw std::runtime_error("no client has come");
            TcpPeer peer(m_context, std::move(socket));
            script(peer);
        } catch (const std::exception& error) {
            m_failure = error.what();
        }
    }

    asio::io_context m_context;
    tcp::acceptor m_acceptor;
    std::thread m_thread;
    std::string m_failure;
};

}  // namespace

void Peer::answer(const Request& request, const std::vector<std::string>& rests) {
    std::string text;
    for (const std::string& rest : rests) text += request.id + "\t" + rest + "\r\n";
    send(text);
}

Request Peer::expect(const std::string& words, const std::vector<std::string>& rests) {
    Request request = next();
    EXPECT_EQ(request.words, words);
    if (!rests.empty()) answer(request, rests);
    return request;
}

void Peer::serve(const std::map<std::string, std::vector<std::string>>& table) {
    try {
        for (;;) {
            const Request request = next();
            const auto found = table.find(request.words);
            answer(request, found == table.end() ? std::vector<std::string>{"error \"unknown\"", "ready"}
                                                 : found->second);
        }
    } catch (const std::runtime_error&) {
        // the client has closed
    }
}

std::unique_ptr<Server> serve_tcp(Script script) { return std::make_unique<TcpServer>(std::move(script)); }

}  // namespace test
