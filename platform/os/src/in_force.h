// What stands behind a seam: the system's own, unless another was put in its place. Any thread may ask.
#pragma once

#include <atomic>

namespace os {

template <class Seam, Seam& (*system_own)()>
class InForce {
public:
    Seam& get() const {
        Seam* const other = m_other.load(std::memory_order_acquire);
        return other ? *other : system_own();
    }

    // Null stands for the system's own. Returns what was in force.
    Seam* replace(Seam* other) {
        Seam* const old = m_other.exchange(other, std::memory_order_acq_rel);
        return old ? old : &system_own();
    }

private:
    std::atomic<Seam*> m_other{nullptr};
};

}  // namespace os
