// Variables of the environment in texts.
#pragma once

#include <cstddef>
#include <string>

// Replaces each %NAME% in `s` by the value of that variable; an unknown name stays as it stands. On failure
// `s` is unchanged and the error trace has the reason.
bool MReplaceEnvironmentVars(std::string& s);

// How variables are replaced: `text` with the values in place goes to `target` if it fits in `size` bytes
// with its final NUL. The result is the size needed with that NUL, or 0 for failure.
using MExpandFunction = std::size_t (*)(const char* text, char* target, std::size_t size);

// The same with another source of variables than the process's environment.
bool MReplaceEnvironmentVars(std::string& s, MExpandFunction expand);
