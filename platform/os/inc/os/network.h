// The system's network, for as long as somebody uses it: Windows wants it started, and not while it loads a
// library.
#pragma once

namespace os {

// Made before the first socket or name to look up, and gone after the last. Any number at once, on any
// thread. If the network can't be started, each use of it fails and says so.
class Network {
public:
    Network() noexcept;
    ~Network();
    Network(const Network&) = delete;
    Network& operator=(const Network&) = delete;

private:
    [[maybe_unused]] const bool m_isStarted;
};

}  // namespace os
