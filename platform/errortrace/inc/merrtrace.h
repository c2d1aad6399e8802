// The error trace: what failed on the way up, collected per thread, innermost failure first.
//
// Contexts nest on each thread. A record goes into the innermost open context of the calling thread; a record
// added while none is open is dropped. Ending a context drops what it still holds; dumping writes its records
// and a final message to the error log and empties it. Nothing here fails outward.
#pragma once

#include "os/printf_format.h"

#if defined(_WIN32) && defined(ZX_BUILDING_errortrace)
#define MERRTRACE_API __declspec(dllexport)
#elif defined(_WIN32)
#define MERRTRACE_API
#else
#define MERRTRACE_API __attribute__((visibility("default")))
#endif

extern "C" {
// Sets the place of the next record, or of the final message of the next dump, of this thread.
MERRTRACE_API void _MErrTrace_Location(int level, const char* source, int line);

// Adds one record to the innermost context, formatted as by printf.
MERRTRACE_API OS_PRINTF_FORMAT(1, 2) void _MErrTrace_Add(const char* format, ...);

MERRTRACE_API void MErrTrace_BeginContext(void);
MERRTRACE_API void MErrTrace_EndContext(void);

// Drops what the innermost context holds; the context stays open.
MERRTRACE_API void MErrTrace_ClearContext(void);

// Writes the innermost context's records, then this message, to the error log, and empties the context.
MERRTRACE_API OS_PRINTF_FORMAT(1, 2) void _MErrTrace_DumpContextToMErrLog(const char* format, ...);
}
