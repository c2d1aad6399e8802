#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string_view>

#include "lineresponder.h"

namespace bench {

namespace {

// Everywhere this program was allowed to run at its start.
const cpu_set_t all_cores = [] {
    cpu_set_t set;
    ::sched_getaffinity(0, sizeof set, &set);
    return set;
}();

void without_delay(int socket) {
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void send_all(int socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) std::_Exit(0);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

// Puts another id of the same length into all lines.
void renumber(std::string& lines, std::string_view id) {
    for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1)
        lines.replace(at, id.size(), id);
}

// What was made beforehand.
struct Answers {
    std::string points;
    std::string block;
};

// One connection and its requests.
class Session {
public:
    Session(int socket, Answers answers) : m_socket(socket), m_answers(std::move(answers)) {
        without_delay(socket);
        send_all(socket, "0000\thello \"bare\" 2.2 simulated\r\n");
    }

    [[noreturn]] void run() {
        for (;;) answer(next());
    }

private:
    std::string next() {
        std::array<char, 4096> buffer;
        std::size_t end = 0;
        while ((end = m_input.find('\n')) == std::string::npos) {
            const ssize_t count = ::recv(m_socket, buffer.data(), buffer.size(), 0);
            if (count <= 0) std::_Exit(0);
            m_input.append(buffer.data(), static_cast<std::size_t>(count));
        }
        std::string line = m_input.substr(0, end - 1);
        m_input.erase(0, end + 1);
        return line;
    }

    void answer(const std::string& line) {
        const std::string id = line.substr(0, line.find('\t'));
        const std::string_view words = std::string_view(line).substr(id.size() + 1);
        if (words.starts_with("get")) {
            send_all(m_socket, id + "\tdata 12.345678\r\n" + id + "\tready\r\n");
        } else if (words == "commands") {
            send_all(m_socket,
                     id + "\tdata \"scan\"\r\n" + id + "\tdata \"scancircle\"\r\n" + id + "\tready\r\n");
        } else if (words.starts_with("scancircle")) {
            scan(id);
        } else if (words.starts_with("receive")) {
            receive(id);
        } else {
            send_all(m_socket, id + "\tready\r\n");
        }
    }

    // The client gives the machine back before the points come, as it does with a machine that moves.
    void scan(const std::string& id) {
        if (id.size() != 4) std::_Exit(1);
        renumber(m_answers.points, id);
        send_all(m_socket, id + "\taccepted\r\n");
        answer(next());
        send_all(m_socket, m_answers.points);
        send_all(m_socket, id + "\tready\r\n");
    }

    void receive(const std::string& id) {
        if (id.size() != 4) std::_Exit(1);
        renumber(m_answers.block, id);
        send_all(m_socket, id + "\taccepted\r\n");
        send_all(m_socket, m_answers.block);
        send_all(m_socket, id + "\tready\r\n");
    }

    int m_socket;
    Answers m_answers;
    std::string m_input;
};

[[noreturn]] void accept_all(int listener, const Answers& answers) {
    std::signal(SIGCHLD, SIG_IGN);
    for (;;) {
        const int socket = ::accept(listener, nullptr, nullptr);
        if (socket < 0) std::_Exit(1);
        if (::fork() == 0) Session(socket, answers).run();
        ::close(socket);
    }
}

std::string base64(const std::string& bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i + 2 < bytes.size(); i += 3) {
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k) group = group << 8 | static_cast<unsigned char>(bytes[i + k]);
        for (int shift = 18; shift >= 0; shift -= 6) text.push_back(digits[group >> shift & 63]);
    }
    return text;
}

std::string block_lines(const std::string& id, std::size_t pieces) {
    std::string text;
    for (std::size_t i = 0; i < pieces; ++i) {
        text.append(id).append(i == 0 ? "\tdata base64 \"" : "\tdata \"");
        text.append(base64(block_piece(i))).append("\"\r\n");
    }
    return text;
}

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
    address.sin_port = ::htons(static_cast<std::uint16_t>(port));
    return address;
}

}  // namespace

void stay_on(Cores cores) {
    cpu_set_t set = all_cores;
    if (cores == Cores::first) {
        int core = 0;
        while (!CPU_ISSET(core, &all_cores)) ++core;
        CPU_ZERO(&set);
        CPU_SET(core, &set);
    }
    ::sched_setaffinity(0, sizeof set, &set);
}

LineResponder::LineResponder(Cores cores, std::size_t points, std::size_t block_pieces) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    if (::bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(listener, 16) != 0 ||
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no port for the responder");
    }
    m_port = std::to_string(::ntohs(address.sin_port));
    m_process = ::fork();
    if (m_process == 0) {
        stay_on(cores);
        accept_all(listener, {point_lines("0000", points), block_lines("0000", block_pieces)});
    }
    ::close(listener);
}

LineResponder::~LineResponder() {
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
}

BareClient::BareClient(const std::string& port) : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = loopback(std::atoi(port.c_str()));
    if (::connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        throw std::runtime_error("the responder isn't there");
    }
    without_delay(m_socket);
    std::array<char, 256> hello;
    if (::recv(m_socket, hello.data(), hello.size(), 0) <= 0)
        throw std::runtime_error("the responder is silent");
}

BareClient::~BareClient() { ::close(m_socket); }

std::size_t BareClient::ask(const std::string& line) {
    return ask(line, [](std::string_view) {});
}

std::size_t BareClient::ask(const std::string& line, const std::function<void(std::string_view)>& take) {
    std::array<char, 65536> buffer;
    if (::send(m_socket, line.data(), line.size(), MSG_NOSIGNAL) < 0)
        throw std::runtime_error("the responder is gone");
    std::size_t total = 0;
    for (;;) {
        const ssize_t count = ::recv(m_socket, buffer.data(), buffer.size(), 0);
        if (count <= 0) throw std::runtime_error("the responder is gone");
        const std::string_view piece(buffer.data(), static_cast<std::size_t>(count));
        total += piece.size();
        take(piece);
        if (piece.ends_with("ready\r\n")) return total;
    }
}

std::string block_piece(std::size_t index) {
    std::mt19937_64 random(index);
    std::string bytes(block_piece_size, '\0');
    for (std::size_t at = 0; at < bytes.size(); at += sizeof(std::uint64_t)) {
        const std::uint64_t number = random();
        std::memcpy(bytes.data() + at, &number, sizeof number);
    }
    return bytes;
}

std::string point_lines(const std::string& id, std::size_t count) {
    std::string text;
    std::array<char, 128> line;
    for (std::size_t i = 1; i <= count; ++i) {
        const double at = static_cast<double>(i);
        const int length =
            std::snprintf(line.data(), line.size(), "%s\tpoint %zu %.6f %.6f %.4f %.6f\r\n", id.c_str(), i,
                          35.0123 - at * 1e-5, -4.9917 + at * 1e-5, 20.0, at * 0.000123);
        text.append(line.data(), static_cast<std::size_t>(length));
    }
    return text;
}

}  // namespace bench
