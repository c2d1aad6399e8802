// The error log: one line per failure in a persistent log that service engineers read.
//
// A report takes two calls, the place and then the text, both on the same thread. Neither fails outward:
// a log that can't be written is never the caller's problem. Any thread may report at any time.
#pragma once

#include "os/printf_format.h"

#if defined(_WIN32) && defined(ZX_BUILDING_errorlog)
#define MERRLOG_API __declspec(dllexport)
#elif defined(_WIN32)
#define MERRLOG_API
#else
#define MERRLOG_API __attribute__((visibility("default")))
#endif

extern "C" {
// Sets the place of the next line of this thread: severity (0 in all of this system), source file, line.
MERRLOG_API void _MErrLog_Location(int level, const char* source, int line);

// Writes one line, formatted as by printf.
MERRLOG_API OS_PRINTF_FORMAT(1, 2) void _MErrLog_Add(const char* format, ...);

// Directs the log to this file from now on (rotated at 1 MiB, three old ones kept). Without a call the file
// is the one named by the environment's ZENDRIX_ERRORLOG, else error.log in the user's state directory. The
// text is copied.
MERRLOG_API void MErrLog_SetFile(const char* path);
}
