// Counts those who are inside, so that an owner can wait until they have left.
#pragma once

#include <cstddef>

#include "os/waitlock.h"

namespace serverdll {

class CallGate {
public:
    void enter() {
        const os::LockGuard guard(m_lock);
        ++m_inside;
    }

    void leave() {
        const os::LockGuard guard(m_lock);
        if (--m_inside == 0 && m_waited) m_empty.notify_all();
    }

    void wait_until_empty() {
        os::WaitLock lock(m_lock);
        m_waited = true;
        while (m_inside > 0) lock.wait(m_empty);
    }

private:
    os::Mutex m_lock;
    std::condition_variable m_empty;
    std::size_t m_inside OS_GUARDED_BY(m_lock) = 0;
    bool m_waited OS_GUARDED_BY(m_lock) = false;
};

// The time inside.
class GatePass {
public:
    explicit GatePass(CallGate& gate) : m_gate(gate) { m_gate.enter(); }
    ~GatePass() { m_gate.leave(); }
    GatePass(const GatePass&) = delete;
    GatePass& operator=(const GatePass&) = delete;

private:
    CallGate& m_gate;
};

}  // namespace serverdll
