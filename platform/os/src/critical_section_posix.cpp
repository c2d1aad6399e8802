#include <mutex>

#include "os/critical_section.h"

namespace os {

struct CriticalSection::Native {
    std::recursive_mutex mutex;
};

CriticalSection::CriticalSection() : m_native(std::make_unique<Native>()) {}
CriticalSection::~CriticalSection() = default;

void CriticalSection::enter() { m_native->mutex.lock(); }
void CriticalSection::leave() { m_native->mutex.unlock(); }
bool CriticalSection::try_enter() { return m_native->mutex.try_lock(); }

}  // namespace os
