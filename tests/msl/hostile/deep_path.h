#pragma once

#include <cstddef>
#include <string>

// A path of `size` bytes in directories below this one.
inline std::string deep_path(const std::string& from, std::size_t size) {
    std::string path = from;
    while (size - path.size() > 250) path += "/" + std::string(200, 'd');
    return path + "/" + std::string(size - path.size() - 1, 'f');
}
