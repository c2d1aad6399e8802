// What printf would print, as a string.
#pragma once

#include <cstdarg>
#include <string>

// The formatted text, or the format itself if it can't be carried out.
#if defined(__GNUC__)
__attribute__((format(printf, 1, 0)))
#endif
std::string
printf_text(const char* format, va_list args);
