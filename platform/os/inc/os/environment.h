// The environment's variables.
#pragma once

#include <cstddef>
#include <string>

namespace os {

// Stores the variable's value, or returns false and leaves `value` as it is if there is no such variable.
bool get_variable(const char* name, std::string& value);

// Copies `text`, with each %NAME% replaced by the variable's value, to `target` if it and a final NUL fit in
// `size` bytes. Returns the bytes needed with that NUL, whether they fit or not; 0 for failure, with the
// reason in last_error() of os/error.h. A pair of percent signs around an unknown name stays.
// POSIX: percent signs pair from left to right, names are case-sensitive.
std::size_t expand_variables(const char* text, char* target, std::size_t size);

}  // namespace os
