// The bytes that this program has allocated with new, counted from the object's making. One object at a time.
#pragma once

#include <cstddef>

class MemoryUse {
public:
    MemoryUse();
    std::size_t now() const;
    std::size_t peak() const;

private:
    std::size_t m_start;
};
