// A name of a section or an entry, in 16 bytes if it is short.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

// Never changes. Copies share the bytes of a long name, which whoever made it gives back: so names can be
// moved about as plain memory.
class MIniDataName {
public:
    static MIniDataName make(std::string_view name) {
        MIniDataName made;
        char* bytes = made.m_bytes.data();
        if (name.size() <= longest_inside) {
            made.m_bytes.back() = static_cast<char>(name.size());
        } else {
            const std::size_t size = name.size();
            bytes = new char[sizeof size + size];
            std::memcpy(made.m_bytes.data(), &bytes, sizeof bytes);
            made.m_bytes.back() = outside;
            std::memcpy(bytes, &size, sizeof size);
            bytes += sizeof size;
        }
        if (!name.empty()) std::memcpy(bytes, name.data(), name.size());
        return made;
    }

    void give_back() const {
        if (m_bytes.back() == outside) delete[] block();
    }

    std::string_view view() const {
        if (m_bytes.back() != outside) return {m_bytes.data(), static_cast<std::size_t>(m_bytes.back())};
        std::size_t size = 0;
        std::memcpy(&size, block(), sizeof size);
        return {block() + sizeof size, size};
    }
    operator std::string_view() const { return view(); }

private:
    static constexpr std::size_t longest_inside = 15;
    static constexpr char outside = 16;

    char* block() const {
        char* block = nullptr;
        std::memcpy(&block, m_bytes.data(), sizeof block);
        return block;
    }

    // The bytes and, last, their count; or the address of a block with count and bytes, and `outside`.
    std::array<char, longest_inside + 1> m_bytes{};
};
