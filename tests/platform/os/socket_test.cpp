// What a connected socket does beside moving bytes, which the client's tests look at.
#include "os/socket.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// Two ends of a connection over loopback.
class SocketTest : public testing::Test {
protected:
    SocketTest() {
        const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(listener, any, size), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        EXPECT_EQ(::getsockname(listener, any, &size), 0);
        m_ours = ::socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(::connect(m_ours, any, size), 0);
        m_theirs = ::accept(listener, nullptr, nullptr);
        ::close(listener);
    }
    ~SocketTest() override {
        ::close(m_ours);
        ::close(m_theirs);
    }

    int m_ours = -1;
    int m_theirs = -1;
};

#if defined(TCP_QUICKACK)

TEST_F(SocketTest, AcknowledgingEndsTheDelay) {
    ASSERT_TRUE(os::socket_can_acknowledge());
    int now = 0;
    socklen_t size = sizeof now;
    ASSERT_EQ(::setsockopt(m_ours, IPPROTO_TCP, TCP_QUICKACK, &now, size), 0);
    ASSERT_EQ(::getsockopt(m_ours, IPPROTO_TCP, TCP_QUICKACK, &now, &size), 0);
    ASSERT_EQ(now, 0);
    os::socket_acknowledge(m_ours);
    ASSERT_EQ(::getsockopt(m_ours, IPPROTO_TCP, TCP_QUICKACK, &now, &size), 0);
    EXPECT_EQ(now, 1);
}

#endif

TEST_F(SocketTest, ReceivingIsBounded) {
    os::socket_prepare(m_ours);
    char byte = 0;
    EXPECT_EQ(os::socket_receive(m_ours, &byte, 1, std::chrono::milliseconds(1)).status,
              os::SocketStatus::timed_out);
    EXPECT_EQ(os::socket_send(m_theirs, "x", 1, std::chrono::seconds(10)).status, os::SocketStatus::done);
    EXPECT_EQ(os::socket_receive(m_ours, &byte, 1, std::chrono::seconds(10)).status, os::SocketStatus::done);
    EXPECT_EQ(byte, 'x');
    os::socket_acknowledge(m_ours);
    os::socket_shutdown(m_theirs);
    EXPECT_EQ(os::socket_receive(m_ours, &byte, 1, std::chrono::seconds(10)).status,
              os::SocketStatus::closed);
}

}  // namespace
