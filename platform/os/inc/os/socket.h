// A connected stream socket, read and written with a bound in time and without signals. Opening and closing
// are the business of its owner; a port sets up the socket so that both operations below keep their bounds.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace os {

using SocketHandle = std::intptr_t;

enum class SocketStatus {
    done,       // `count` bytes were moved
    timed_out,  // none were, in the given time
    closed,     // the other end has closed, or this one was shut down
    reset,      // the other end has broken the connection off
    failed      // something else
};

struct SocketResult {
    SocketStatus status;
    std::size_t count;
};

// Once for each socket, in blocking mode, before anything else here.
void socket_prepare(SocketHandle socket);

// Before a listener binds: a port that another listens at can't be had, one whose listener is gone can at
// once.
void socket_listen_alone(SocketHandle listener) noexcept;

// Waits for bytes and takes what is there. Waits of more than half a second may end early with timed_out, so
// a caller counts the time by himself.
SocketResult socket_receive(SocketHandle socket, char* to, std::size_t size,
                            std::chrono::milliseconds at_most);

// Sends the whole text, or fails; after a failure a part of it may have left.
SocketResult socket_send(SocketHandle socket, const char* bytes, std::size_t size,
                         std::chrono::milliseconds at_most);

// Lets the acknowledgement of what was received leave now, where it waits for more to acknowledge or for
// bytes to go with. It holds until this end sends again. Nothing happens on a system that has no such thing.
void socket_acknowledge(SocketHandle socket) noexcept;

// Whether the system has it.
bool socket_can_acknowledge() noexcept;

// Ends both directions and wakes whoever waits in the two operations above, on any thread.
void socket_shutdown(SocketHandle socket) noexcept;

}  // namespace os
