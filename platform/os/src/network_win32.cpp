#include <winsock2.h>

#include "os/network.h"

namespace os {
namespace {

bool start() {
    WSADATA ignored;
    return ::WSAStartup(MAKEWORD(2, 2), &ignored) == 0;
}

}  // namespace

Network::Network() noexcept : m_isStarted(start()) {}

Network::~Network() {
    if (m_isStarted) ::WSACleanup();
}

}  // namespace os
