// All bytes of a file, or of standard input.
#pragma once

#include <string>

namespace zxhost {

constexpr const char* standard_stream = "-";  // in the place of a file's name

// Throws HostError (wrong usage) if it can't be read, or holds more than a machine would ever take.
std::string read_bytes(const std::string& file);

}  // namespace zxhost
