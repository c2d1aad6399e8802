// Paths as the system wants them. Everything above this folder builds paths with '\' or '/' as it likes.
#pragma once

#include <string>

namespace os {

// The path with every separator turned into the system's own.
std::string native_path(const std::string& path);

}  // namespace os
