// Looking for one byte, at the speed of the library's search.
#pragma once

#include <cstddef>
#include <cstring>

// The first such byte from `begin` to `end`, else `end`.
inline const char* find_byte(const char* begin, const char* end, char wanted) {
    const void* const found = std::memchr(begin, wanted, static_cast<std::size_t>(end - begin));
    return found ? static_cast<const char*>(found) : end;
}
