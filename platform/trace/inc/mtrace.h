// The levelled trace: named channels with a level each, and a master level over all of them.
//
// A line is written when both its channel's level and the master level are at least the line's level; higher
// levels give more detail, and 0 (the start value) is silence. Any thread may call at any time.
#pragma once

#include "os/printf_format.h"

#if defined(_WIN32) && defined(ZX_BUILDING_trace)
#define MTRACE_API __declspec(dllexport)
#elif defined(_WIN32)
#define MTRACE_API
#else
#define MTRACE_API __attribute__((visibility("default")))
#endif

extern "C" {
// Both return the level that was in force before.
MTRACE_API int _MTrace_SetLevel(const char* channel, unsigned level);
MTRACE_API int MTrace_SetMasterLevel(unsigned level);

// Is this level on? The first asks the channel and the master level, the second the master level alone.
MTRACE_API bool _MTrace_TestLevel(const char* channel, int level);
MTRACE_API bool MTrace_TestMasterLevel(int level);

// Sets the place, channel and level of this thread's next line.
MTRACE_API void _MTrace_Location(const char* file, int line, const char* channel, int level);

// Writes one line, formatted as by printf, whatever the levels are: ask _MTrace_TestLevel first.
MTRACE_API OS_PRINTF_FORMAT(1, 2) void _MTrace_Always(const char* format, ...);

// Directs the trace to this file from now on (rotated at 16 MiB, three old ones kept). Without a call it is
// the file named by the environment's ZENDRIX_TRACE, else trace.log in the user's state directory. The text
// is copied.
MTRACE_API void MTrace_SetFile(const char* path);
}
