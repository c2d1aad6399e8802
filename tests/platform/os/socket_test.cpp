// What a connected socket does with bounds in time and when an end goes.
#include "os/socket.h"

#include <gtest/gtest.h>

#include <future>
#include <string>

#include "connected_sockets.h"

namespace {

using os::SocketStatus;
using std::chrono::milliseconds;
using std::chrono::seconds;

class SocketTest : public testing::Test, protected ConnectedSockets {
protected:
    SocketTest() { os::socket_prepare(ours()); }

    os::SocketResult receive(milliseconds at_most = seconds(10)) {
        return os::socket_receive(ours(), m_bytes, sizeof m_bytes, at_most);
    }
    // Until the status is another one, or for long.
    SocketStatus receive_until_not(SocketStatus status) {
        SocketStatus found = status;
        for (int n = 0; n < 100 && found == status; ++n) found = receive().status;
        return found;
    }

    char m_bytes[4096] = "";
};

TEST_F(SocketTest, ReceivingIsBounded) {
    EXPECT_EQ(receive(milliseconds(0)).status, SocketStatus::timed_out);
    EXPECT_EQ(receive(milliseconds(1)).status, SocketStatus::timed_out);
    EXPECT_EQ(receive(milliseconds(600)).status, SocketStatus::timed_out);
}

TEST_F(SocketTest, WhatWasSentIsReceived) {
    EXPECT_EQ(os::socket_send(theirs(), "xyz", 3, seconds(10)).status, SocketStatus::done);
    const os::SocketResult result = receive();
    EXPECT_EQ(result.status, SocketStatus::done);
    EXPECT_EQ(std::string(m_bytes, result.count), "xyz");
    os::socket_acknowledge(ours());
}

TEST_F(SocketTest, AReaderWakesForBytes) {
    auto reader =
        std::async(std::launch::async, [this] { return receive_until_not(SocketStatus::timed_out); });
    EXPECT_EQ(os::socket_send(theirs(), "x", 1, seconds(10)).status, SocketStatus::done);
    EXPECT_EQ(reader.get(), SocketStatus::done);
}

TEST_F(SocketTest, TheOtherEndsShutdownIsSeen) {
    os::socket_shutdown(theirs());
    EXPECT_EQ(receive().status, SocketStatus::closed);
}

TEST_F(SocketTest, TheOwnShutdownWakesAReader) {
    auto reader =
        std::async(std::launch::async, [this] { return receive_until_not(SocketStatus::timed_out); });
    os::socket_shutdown(ours());
    EXPECT_EQ(reader.get(), SocketStatus::closed);
    EXPECT_EQ(receive().status, SocketStatus::closed);
}

TEST_F(SocketTest, ABrokenConnectionIsSeen) {
    m_theirs.set_option(asio::socket_base::linger(true, 0));
    m_theirs.close();
    // Wine hides the reason from a reader.
    const SocketStatus seen = receive().status;
    EXPECT_TRUE(seen == SocketStatus::reset || seen == SocketStatus::closed);
    EXPECT_EQ(os::socket_send(ours(), "x", 1, seconds(10)).status, SocketStatus::reset);
}

TEST_F(SocketTest, SendingIsBounded) {
    const std::string much(64U << 20, 'x');
    const os::SocketResult result = os::socket_send(ours(), much.data(), much.size(), milliseconds(50));
    EXPECT_EQ(result.status, SocketStatus::timed_out);
    EXPECT_LT(result.count, much.size());
}

TEST_F(SocketTest, MuchIsSentWhole) {
    const std::string much(16U << 20, 'x');
    auto sender = std::async(std::launch::async, [&] {
        return os::socket_send(ours(), much.data(), much.size(), seconds(60)).status;
    });
    std::size_t count = 0;
    while (count < much.size()) count += m_theirs.read_some(asio::buffer(m_bytes));
    EXPECT_EQ(sender.get(), SocketStatus::done);
    EXPECT_EQ(count, much.size());
}

class ListenerTest : public testing::Test {
protected:
    using tcp = asio::ip::tcp;

    // Listens at the port, or at any if it is 0. The error of the attempt.
    static asio::error_code listen(tcp::acceptor& listener, unsigned short port) {
        asio::error_code error;
        listener.open(tcp::v4());
        os::socket_listen_alone(static_cast<os::SocketHandle>(listener.native_handle()));
        listener.bind({asio::ip::address_v4::loopback(), port}, error);
        if (!error) listener.listen(asio::socket_base::max_listen_connections, error);
        return error;
    }

    asio::io_context m_context{1};
    tcp::acceptor m_first{m_context};
    tcp::acceptor m_second{m_context};
};

TEST_F(ListenerTest, HasItsPortAlone) {
    ASSERT_FALSE(listen(m_first, 0));
    EXPECT_EQ(listen(m_second, m_first.local_endpoint().port()), asio::error::address_in_use);
}

TEST_F(ListenerTest, LeavesItsPortToTheNext) {
    ASSERT_FALSE(listen(m_first, 0));
    const unsigned short port = m_first.local_endpoint().port();
    tcp::socket client(m_context);
    client.connect(m_first.local_endpoint());
    m_first.accept().close();  // what is left of it lingers for a minute
    client.close();
    m_first.close();
    EXPECT_FALSE(listen(m_second, port));
}

}  // namespace
