#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>

#include "os/socket.h"

namespace os {

namespace {

using Clock = std::chrono::steady_clock;

// The socket's own bound: a wait of at least this long costs one system call instead of two.
constexpr std::chrono::milliseconds slice{500};

bool is_no_progress(int error) noexcept { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

SocketStatus status_of(int error) noexcept {
    if (is_no_progress(error)) return SocketStatus::timed_out;
    return error == ECONNRESET || error == EPIPE ? SocketStatus::reset : SocketStatus::failed;
}

bool wait_for(int socket, short events, std::chrono::milliseconds at_most) noexcept {
    pollfd entry{socket, events, 0};
    return ::poll(&entry, 1, static_cast<int>(at_most.count())) > 0;
}

}  // namespace

void socket_prepare(SocketHandle socket) {
    timeval bound{};
    bound.tv_usec = std::chrono::microseconds(slice).count();
    ::setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_RCVTIMEO, &bound, sizeof bound);
    ::setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_SNDTIMEO, &bound, sizeof bound);
}

// Here this means the connections that are left of an earlier listener alone.
void socket_listen_alone(SocketHandle listener) noexcept {
    const int yes = 1;
    ::setsockopt(static_cast<int>(listener), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

SocketResult socket_receive(SocketHandle socket, char* to, std::size_t size,
                            std::chrono::milliseconds at_most) {
    const int handle = static_cast<int>(socket);
    int flags = 0;
    if (at_most < slice) {
        if (!wait_for(handle, POLLIN, at_most)) return {SocketStatus::timed_out, 0};
        flags = MSG_DONTWAIT;
    }
    const ssize_t count = ::recv(handle, to, size, flags);
    if (count > 0) return {SocketStatus::done, static_cast<std::size_t>(count)};
    return {count == 0 ? SocketStatus::closed : status_of(errno), 0};
}

SocketResult socket_send(SocketHandle socket, const char* bytes, std::size_t size,
                         std::chrono::milliseconds at_most) {
    const int handle = static_cast<int>(socket);
    const ssize_t first = ::send(handle, bytes, size, MSG_NOSIGNAL);
    if (first == static_cast<ssize_t>(size)) return {SocketStatus::done, size};
    const Clock::time_point end = Clock::now() + at_most;
    std::size_t sent = first > 0 ? static_cast<std::size_t>(first) : 0;
    if (first < 0 && !is_no_progress(errno)) return {status_of(errno), 0};
    while (sent < size) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0) return {SocketStatus::timed_out, sent};
        if (!wait_for(handle, POLLOUT, left)) continue;
        const ssize_t count = ::send(handle, bytes + sent, size - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && !is_no_progress(errno)) return {status_of(errno), sent};
        if (count > 0) sent += static_cast<std::size_t>(count);
    }
    return {SocketStatus::done, sent};
}

#if defined(TCP_QUICKACK)

void socket_acknowledge(SocketHandle socket) noexcept {
    const int now = 1;
    ::setsockopt(static_cast<int>(socket), IPPROTO_TCP, TCP_QUICKACK, &now, sizeof now);
}

// The kernel may know less than the headers.
bool socket_can_acknowledge() noexcept {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) return false;
    const int now = 1;
    const bool can = ::setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &now, sizeof now) == 0;
    ::close(socket);
    return can;
}

#else

void socket_acknowledge(SocketHandle) noexcept {}
bool socket_can_acknowledge() noexcept { return false; }

#endif

void socket_shutdown(SocketHandle socket) noexcept { ::shutdown(static_cast<int>(socket), SHUT_RDWR); }

}  // namespace os
