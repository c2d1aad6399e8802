#include "merrlog.h"

#include <cstdarg>
#include <string>
#include <utility>

#include "os/thread_text.h"
#include "printf_text.h"
#include "rotating_log.h"

namespace {

// Never destroyed: other threads may still report while the process ends.
RotatingLog& error_log() {
    static RotatingLog& log = *new RotatingLog("ZENDRIX_ERRORLOG", "error.log", 1 << 20);
    return log;
}

struct Place {
    os::ThreadText<256> source;
    int line = 0;
};

thread_local Place next_place;

std::string placed(const Place& place, const std::string& text) {
    if (place.source.empty()) return text;
    return std::string(place.source.c_str()) + "(" + std::to_string(place.line) + "): " + text;
}

}  // namespace

extern "C" {

void _MErrLog_Location(int, const char* source, int line) {
    next_place.source.keep(source);
    next_place.line = line;
}

void _MErrLog_Add(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const std::string text = printf_text(format, args);
    va_end(args);
    error_log().write(placed(std::exchange(next_place, Place{}), text));
}

void MErrLog_SetFile(const char* path) { error_log().set_file(path); }
}
