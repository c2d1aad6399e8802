#include "os/network.h"

namespace os {

Network::Network() noexcept : m_isStarted(true) {}
Network::~Network() = default;

}  // namespace os
