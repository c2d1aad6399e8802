// Two ends of a connection over loopback.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include "os/socket.h"

class ConnectedSockets {
protected:
    ConnectedSockets() {
        using asio::ip::tcp;
        tcp::acceptor listener(m_context, tcp::endpoint(asio::ip::address_v4::loopback(), 0));
        m_ours.connect(listener.local_endpoint());
        m_theirs = listener.accept();
    }

    os::SocketHandle ours() { return static_cast<os::SocketHandle>(m_ours.native_handle()); }
    os::SocketHandle theirs() { return static_cast<os::SocketHandle>(m_theirs.native_handle()); }

    asio::io_context m_context{1};
    asio::ip::tcp::socket m_ours{m_context};
    asio::ip::tcp::socket m_theirs{m_context};
};
