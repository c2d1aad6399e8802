// Reporting to the error log and the error trace in one line, and the scope object of the error trace.
#pragma once

#include <array>
#include <cstdarg>
#include <cstdio>

#include "merrlog.h"
#include "merrtrace.h"

// One report with its place; `source` names the source file as it is to be read in the log.
#define MERRLOG_REPORT(source, ...) (::_MErrLog_Location(0, source, __LINE__), ::_MErrLog_Add(__VA_ARGS__))
#define MERRTRACE_REPORT(source, ...) \
    (::_MErrTrace_Location(0, source, __LINE__), ::_MErrTrace_Add(__VA_ARGS__))

// Opens a context of the calling thread's error trace for as long as it lives; what was collected and not
// dumped is dropped at its end. An object stays on the thread that made it, and scopes nest.
class MErrTraceContext {
public:
    // `source` is kept as a pointer: a literal.
    explicit MErrTraceContext(const char* source) : m_source(source) { MErrTrace_BeginContext(); }
    ~MErrTraceContext() { MErrTrace_EndContext(); }
    MErrTraceContext(const MErrTraceContext&) = delete;
    MErrTraceContext& operator=(const MErrTraceContext&) = delete;

    // Moves the collected records to the error log, followed by this message, formatted as by printf and cut
    // after 255 characters. The context stays open, empty.
    OS_PRINTF_FORMAT(3, 4) void DumpToMErrLog(int line, const char* format, ...) {
        // One for each thread: the dump must not see another thread's text.
        static thread_local std::array<char, 256> buffer;
        va_list args;
        va_start(args, format);
        const int length = std::vsnprintf(buffer.data(), buffer.size(), format, args);
        va_end(args);
        if (length < 0) buffer[0] = '\0';
        if (length < 0 || length >= static_cast<int>(buffer.size())) {
            _MErrLog_Location(0, m_source, line);
            _MErrLog_Add("%s", "MErrTraceContext::DumpToMErrLog(): output string too long !");
        }
        _MErrTrace_Location(0, m_source, line);
        _MErrTrace_DumpContextToMErrLog("%s", buffer.data());
    }

private:
    const char* m_source;
};
