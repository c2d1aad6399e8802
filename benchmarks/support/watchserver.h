// A bare server of lines on a thread of its own that reports values at an exact rate, and counts what it
// sends.
#pragma once

#include <cstddef>
#include <string>
#include <thread>

namespace bench {

// Serves one connection after the other until it is destroyed. It answers `watch` with `records` records at
// the interval that was asked for, and everything else with `ready`. The first value of a record is its
// number, from 1. What it is late it makes up for: no record is left out. Two seconds after the last record
// it closes the connection.
class WatchServer {
public:
    explicit WatchServer(std::size_t records);  // throws std::runtime_error
    ~WatchServer();
    WatchServer(const WatchServer&) = delete;
    WatchServer& operator=(const WatchServer&) = delete;

    const std::string& port() const noexcept { return m_port; }

private:
    void serve_all(std::size_t records) const;

    int m_listener = -1;
    std::string m_port;
    std::thread m_thread;
};

}  // namespace bench
