// A text of bounded length that a thread keeps until its next call. It has no destructor on purpose: MinGW's
// run-time library frees a thread's memory before it destroys the thread's objects.
#pragma once

#include <array>
#include <string_view>
#include <type_traits>

class KeptText {
public:
    // Keeps the first 255 characters; null is an empty text.
    void keep(const char* text) {
        m_text[std::string_view(text ? text : "").copy(m_text.data(), m_text.size() - 1)] = '\0';
    }

    const char* c_str() const { return m_text.data(); }
    bool empty() const { return m_text[0] == '\0'; }

private:
    std::array<char, 256> m_text{};
};

static_assert(std::is_trivially_destructible_v<KeptText>);
