#include "idsource.h"

#include "request.h"

namespace serverdll {

long IdSource::next() {
    for (;;) {
        const std::uint64_t count = m_next.fetch_add(1, std::memory_order_relaxed);
        const long id = static_cast<long>(count % wire::max_id) + 1;
        if (count < wire::max_id || !is_held(id)) return id;
    }
}

void IdSource::hold(long id, const void* owner) {
    const os::LockGuard guard(m_lock);
    m_held[id] = owner;
}

void IdSource::release(long id) {
    const os::LockGuard guard(m_lock);
    m_held.erase(id);
}

void IdSource::release_all(const void* owner) {
    const os::LockGuard guard(m_lock);
    std::erase_if(m_held, [owner](const auto& entry) { return entry.second == owner; });
}

bool IdSource::is_held(long id) {
    const os::LockGuard guard(m_lock);
    return m_held.contains(id);
}

IdSource& process_ids() {
    static IdSource ids;
    return ids;
}

}  // namespace serverdll
