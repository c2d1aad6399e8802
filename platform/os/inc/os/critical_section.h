// A lock that its owner may enter again, as the support library's mutex needs it.
#pragma once

#include <memory>

namespace os {

// Left as often as it was entered, and by the same thread; nobody holds it when it is destroyed.
class CriticalSection {
public:
    CriticalSection();
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void enter();
    void leave();
    // Doesn't wait; true if the section was entered.
    bool try_enter();

private:
    struct Native;
    std::unique_ptr<Native> m_native;
};

}  // namespace os
