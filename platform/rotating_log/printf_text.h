// What printf would print, as a string.
#pragma once

#include <cstdarg>
#include <string>

#include "os/printf_format.h"

// The formatted text, or the format itself if it can't be carried out.
OS_PRINTF_FORMAT(1, 0) std::string printf_text(const char* format, va_list args);
