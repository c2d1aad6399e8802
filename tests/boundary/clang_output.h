// What clang makes of our headers for each of the systems that a host may be built for.
#pragma once

#include <string>

enum class Abi { linux_itanium, mingw, microsoft };

// Runs clang for this target, on our headers, with these words more, and returns all that it writes. Throws
// std::runtime_error with its own words if there is no clang or it fails.
std::string clang_output(Abi abi, const std::string& words);
