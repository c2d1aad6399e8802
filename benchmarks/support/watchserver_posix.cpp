#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "watchserver.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds patience{2};

// One connection.
class Connection {
public:
    Connection(int socket, std::size_t records) : m_socket(socket), m_records(records) {
        const int on = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        send("0000\thello \"bare\" 2.2 simulated\r\n");
    }

    void serve() {
        while (m_is_open) {
            const Clock::time_point now = Clock::now();
            send_due(now);
            const bool is_over = m_sent == m_records && now > m_next + patience;
            if (is_over) return;
            read_until(is_watched() ? m_next : now + patience);
        }
    }

private:
    bool is_watched() const { return m_interval.count() > 0 && m_sent < m_records; }

    void send(std::string_view bytes) {
        while (!bytes.empty() && m_is_open) {
            const ssize_t count = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0) m_is_open = false;
            bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
    }

    void send_due(Clock::time_point now) {
        for (; is_watched() && m_next <= now && m_is_open; m_next += m_interval) {
            std::string line = m_id + "\twatch " + std::to_string(++m_sent) + ".000000";
            for (std::size_t i = 1; i < m_axes; ++i) {
                const std::size_t fraction = (m_sent * 7919 + i * 104729) % 1000000;
                line += " " + std::to_string(100 + i) + "." + std::to_string(1000000 + fraction).substr(1);
            }
            send(line + "\r\n");
        }
    }

    void read_until(Clock::time_point end) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd input{m_socket, POLLIN, 0};
        if (::poll(&input, 1, static_cast<int>(std::clamp<long long>(left, 0, 1000))) <= 0) return;
        std::array<char, 4096> buffer;
        const ssize_t count = ::recv(m_socket, buffer.data(), buffer.size(), 0);
        if (count <= 0) m_is_open = false;
        m_input.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        for (std::size_t line_end; (line_end = m_input.find('\n')) != std::string::npos;) {
            answer(m_input.substr(0, line_end));
            m_input.erase(0, line_end + 1);
        }
    }

    void answer(const std::string& line) {
        const std::size_t tab = line.find('\t');
        const std::string id = line.substr(0, tab);
        send(id + "\tready\r\n");
        const std::string_view words = std::string_view(line).substr(tab + 1);
        if (!words.starts_with("watch ") || words.starts_with("watch 0")) return;
        m_id = id;
        m_interval = std::chrono::milliseconds(std::strtol(words.data() + 6, nullptr, 10));
        m_axes = static_cast<std::size_t>(std::count(words.begin(), words.end(), '"')) / 2;
        m_next = Clock::now() + m_interval;
    }

    int m_socket;
    std::size_t m_records;
    bool m_is_open = true;
    std::string m_input;
    std::string m_id;
    std::size_t m_axes = 0;
    std::size_t m_sent = 0;
    std::chrono::milliseconds m_interval{0};
    Clock::time_point m_next;
};

}  // namespace

WatchServer::WatchServer(std::size_t records) : m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listener, any, size) != 0 || ::listen(m_listener, 1) != 0 ||
        ::getsockname(m_listener, any, &size) != 0)
        throw std::runtime_error("no server");
    m_port = std::to_string(::ntohs(address.sin_port));
    m_thread = std::thread([this, records] { serve_all(records); });
}

WatchServer::~WatchServer() {
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
}

void WatchServer::serve_all(std::size_t records) const {
    for (int socket; (socket = ::accept(m_listener, nullptr, nullptr)) >= 0; ::close(socket))
        Connection(socket, records).serve();
}

}  // namespace bench
