// A text of bounded length that a thread keeps in a thread_local object. It has no destructor on purpose:
// MinGW's run-time library frees a thread's memory before it destroys the thread's objects.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace os {

template <std::size_t size>
class ThreadText {
public:
    // Keeps the first size - 1 characters, ended by NUL; returns where they stand until the next call.
    const char* keep(std::string_view text) {
        m_text[text.copy(m_text.data(), size - 1)] = '\0';
        return m_text.data();
    }
    // Null is an empty text.
    const char* keep(const char* text) { return keep(std::string_view(text ? text : "")); }

    const char* c_str() const { return m_text.data(); }
    bool empty() const { return m_text[0] == '\0'; }

private:
    std::array<char, size> m_text{};
};

}  // namespace os
