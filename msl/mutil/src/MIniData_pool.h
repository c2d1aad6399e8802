// Memory for the lines of a model.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

// Makes and drops lines of any class derived from `Line` that is no larger than `Largest`, without what an
// allocator keeps beside each block. All lines must be dropped before the pool ends.
template <class Line, class Largest>
class MIniDataPool {
public:
    MIniDataPool() = default;
    MIniDataPool(const MIniDataPool&) = delete;
    MIniDataPool& operator=(const MIniDataPool&) = delete;
    ~MIniDataPool() { clear(); }

    // Null if memory is exhausted.
    template <class Derived, class... Arguments>
    Derived* make(Arguments&&... arguments) {
        static_assert(sizeof(Derived) <= sizeof(Slot) && alignof(Derived) <= alignof(Slot));
        if (!m_free && !add_chunk()) return nullptr;
        Slot* const slot = m_free;
        Slot* const next = slot->next;
        Derived* const line = new (slot) Derived(std::forward<Arguments>(arguments)...);
        m_free = next;
        return line;
    }

    void drop(Line* line) {
        line->~Line();
        m_free = new (line) Slot{m_free};
    }

    // Gives back the memory; there must be no lines.
    void clear() {
        while (m_chunks) delete std::exchange(m_chunks, m_chunks->next);
        m_free = nullptr;
    }

private:
    union Slot {
        Slot* next;  // of those that are free
        alignas(Largest) std::array<std::byte, sizeof(Largest)> line;
    };
    struct Chunk {
        Chunk* next;
        std::array<Slot, 20> slots;  // below 1 KB, which allocators hand out fast
    };

    bool add_chunk() {
        auto* const chunk = new (std::nothrow) Chunk;
        if (!chunk) return false;
        chunk->next = std::exchange(m_chunks, chunk);
        for (std::size_t i = chunk->slots.size(); i-- > 0;) m_free = new (&chunk->slots[i]) Slot{m_free};
        return true;
    }

    Chunk* m_chunks = nullptr;
    Slot* m_free = nullptr;
};
