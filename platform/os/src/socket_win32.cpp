#include <winsock2.h>

#include <algorithm>

#include "os/socket.h"
#include "windows_api.h"

namespace os {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// A wait for a socket may not see that this end was shut down: it looks anew after this long.
constexpr milliseconds slice{100};

SOCKET native(SocketHandle socket) noexcept { return static_cast<SOCKET>(socket); }

int piece(std::size_t size) noexcept {
    constexpr std::size_t most = 1 << 30;
    return static_cast<int>(std::min(size, most));
}

SocketStatus status_of(int error) noexcept {
    switch (error) {
        case WSAEWOULDBLOCK:
            return SocketStatus::timed_out;
        case WSAECONNRESET:
        case WSAECONNABORTED:
        case WSAENETRESET:
            return SocketStatus::reset;
        case WSAESHUTDOWN:
            return SocketStatus::closed;
        default:
            return SocketStatus::failed;
    }
}

void wait_for(SocketHandle socket, SHORT events, milliseconds at_most) noexcept {
    WSAPOLLFD entry{native(socket), events, 0};
    ::WSAPoll(&entry, 1, static_cast<int>(std::clamp(at_most, milliseconds(0), slice).count()));
}

SocketResult receive_now(SocketHandle socket, char* to, std::size_t size) noexcept {
    const int count = ::recv(native(socket), to, piece(size), 0);
    if (count > 0) return {SocketStatus::done, static_cast<std::size_t>(count)};
    return {count == 0 ? SocketStatus::closed : status_of(::WSAGetLastError()), 0};
}

milliseconds until(Clock::time_point end) { return std::chrono::ceil<milliseconds>(end - Clock::now()); }

}  // namespace

// Nothing blocks but the waits above.
void socket_prepare(SocketHandle socket) {
    u_long yes = 1;
    ::ioctlsocket(native(socket), static_cast<long>(FIONBIO), &yes);
}

// SO_REUSEADDR would let two listen at one port here.
void socket_listen_alone(SocketHandle listener) noexcept {
    const BOOL yes = TRUE;
    ::setsockopt(native(listener), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&yes),
                 sizeof yes);
}

SocketResult socket_receive(SocketHandle socket, char* to, std::size_t size, milliseconds at_most) {
    SocketResult result = receive_now(socket, to, size);
    if (result.status != SocketStatus::timed_out || at_most <= milliseconds(0)) return result;
    const Clock::time_point end = Clock::now() + std::min(at_most, milliseconds(500));
    for (milliseconds left = until(end); left > milliseconds(0); left = until(end)) {
        wait_for(socket, POLLRDNORM, left);
        result = receive_now(socket, to, size);
        if (result.status != SocketStatus::timed_out) break;
    }
    return result;
}

SocketResult socket_send(SocketHandle socket, const char* bytes, std::size_t size, milliseconds at_most) {
    const Clock::time_point end = Clock::now() + at_most;
    std::size_t sent = 0;
    while (sent < size) {
        const int count = ::send(native(socket), bytes + sent, piece(size - sent), 0);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
            continue;
        }
        const SocketStatus status = status_of(::WSAGetLastError());
        const milliseconds left = until(end);
        if (status != SocketStatus::timed_out || left <= milliseconds(0)) return {status, sent};
        wait_for(socket, POLLWRNORM, left);
    }
    return {SocketStatus::done, sent};
}

// The system acknowledges as the adapter is set, and lets nobody hurry it.
void socket_acknowledge(SocketHandle) noexcept {}
bool socket_can_acknowledge() noexcept { return false; }

void socket_shutdown(SocketHandle socket) noexcept { ::shutdown(native(socket), SD_BOTH); }

}  // namespace os
