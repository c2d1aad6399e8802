// Reading numbers whatever the process's locale is.
#pragma once

namespace os {

// As strtod does in the "C" locale, with the same results for too large and too small numbers.
double string_to_double(const char* text, char** end);

}  // namespace os
