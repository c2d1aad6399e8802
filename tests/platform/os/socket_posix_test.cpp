// The acknowledgements of a connected socket, which only some systems let a program hurry.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "connected_sockets.h"
#include "os/socket.h"

#if defined(TCP_QUICKACK)

namespace {

class SocketPosix : public testing::Test, protected ConnectedSockets {};

TEST_F(SocketPosix, AcknowledgingEndsTheDelay) {
    ASSERT_TRUE(os::socket_can_acknowledge());
    const int socket = m_ours.native_handle();
    int now = 0;
    socklen_t size = sizeof now;
    ASSERT_EQ(::setsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &now, size), 0);
    ASSERT_EQ(::getsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &now, &size), 0);
    ASSERT_EQ(now, 0);
    os::socket_acknowledge(ours());
    ASSERT_EQ(::getsockopt(socket, IPPROTO_TCP, TCP_QUICKACK, &now, &size), 0);
    EXPECT_EQ(now, 1);
}

}  // namespace

#endif
