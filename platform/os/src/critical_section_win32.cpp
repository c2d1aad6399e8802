#include "os/critical_section.h"
#include "windows_api.h"

namespace os {

struct CriticalSection::Native {
    CRITICAL_SECTION section;
};

CriticalSection::CriticalSection() : m_native(std::make_unique<Native>()) {
    ::InitializeCriticalSection(&m_native->section);
}

CriticalSection::~CriticalSection() { ::DeleteCriticalSection(&m_native->section); }

void CriticalSection::enter() { ::EnterCriticalSection(&m_native->section); }
void CriticalSection::leave() { ::LeaveCriticalSection(&m_native->section); }
bool CriticalSection::try_enter() { return ::TryEnterCriticalSection(&m_native->section) == 1; }

}  // namespace os
