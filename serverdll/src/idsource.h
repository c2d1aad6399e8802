// Transaction ids: one counter for the whole process, because a host can still speak of an id after the
// client that gave it has gone.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>

#include "os/mutex.h"

namespace serverdll {

class IdSource {
public:
    // `start` is for tests of the wrap.
    explicit IdSource(std::uint64_t start = 0) noexcept : m_next(start) {}

    // Within 1 and 2147483647, in turn; after the wrap never one that is held.
    long next();

    // An id that outlives its call (a transaction) is held until its end was told.
    void hold(long id, const void* owner);
    void release(long id);
    void release_all(const void* owner);

private:
    bool is_held(long id);

    std::atomic<std::uint64_t> m_next;
    os::Mutex m_lock;
    std::map<long, const void*> m_held OS_GUARDED_BY(m_lock);
};

IdSource& process_ids();

}  // namespace serverdll
