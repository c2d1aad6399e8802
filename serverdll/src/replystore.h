// The reply lines of transfers, kept until the host has taken them.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "linequeue.h"
#include "os/mutex.h"

namespace serverdll {

// Any thread may call any operation.
class ReplyStore {
public:
    explicit ReplyStore(std::size_t most_bytes) : m_mostBytes(most_bytes) {}

    void open(long id);
    // False if the store is full: the receiver gives up its lines, takes no further ones, and stays until the
    // end of the transfer. A line that nobody takes is just dropped.
    bool add(long id, std::string_view line);
    // The end of the transfer was told; the receiver goes with its last line.
    void completed(long id);
    void drop(long id);

    bool has(long id);
    std::size_t count(long id);
    bool take(long id, std::string& line);
    // All that stands between the quotes of the lines, joined.
    std::string joined(long id);
    // The longest line that was ever kept.
    std::size_t longest_line();

private:
    struct Receiver {
        LineQueue lines;
        bool completed = false;
        bool gave_up = false;
    };

    void forget_lines(Receiver& receiver) OS_REQUIRES(m_lock);

    os::Mutex m_lock;
    const std::size_t m_mostBytes;
    std::map<long, Receiver> m_receivers OS_GUARDED_BY(m_lock);
    std::size_t m_bytes OS_GUARDED_BY(m_lock) = 0;
    std::size_t m_longest OS_GUARDED_BY(m_lock) = 0;
};

}  // namespace serverdll
