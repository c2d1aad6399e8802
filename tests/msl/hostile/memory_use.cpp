#include "memory_use.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> in_use{0};
std::atomic<std::size_t> most_in_use{0};

// The size stands before each block.
constexpr std::size_t header = alignof(std::max_align_t);

void* allocate(std::size_t size) noexcept {
    auto* const block = static_cast<std::size_t*>(std::malloc(size + header));
    if (!block) return nullptr;
    *block = size;
    const std::size_t now = in_use += size;
    std::size_t most = most_in_use;
    while (most < now && !most_in_use.compare_exchange_weak(most, now)) {
    }
    return reinterpret_cast<char*>(block) + header;
}

void release(void* memory) noexcept {
    if (!memory) return;
    void* const block = static_cast<char*>(memory) - header;
    in_use -= *static_cast<std::size_t*>(block);
    std::free(block);
}

}  // namespace

MemoryUse::MemoryUse() : m_start(in_use) { most_in_use = m_start; }
std::size_t MemoryUse::now() const { return in_use - m_start; }
std::size_t MemoryUse::peak() const { return most_in_use - m_start; }

void* operator new(std::size_t size) {
    if (void* const memory = allocate(size)) return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { release(memory); }
