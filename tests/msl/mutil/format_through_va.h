// stl_string_format_va as a function that takes its arguments directly.
#pragma once

#include <cstdarg>
#include <string>

#include "stl_utilities.h"

OS_PRINTF_FORMAT(1, 2)
inline std::string format_through_va(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = stl_string_format_va(format, args);
    va_end(args);
    return text;
}
