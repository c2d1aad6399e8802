#include "mtrace.h"

#include <atomic>
#include <cstdarg>
#include <map>
#include <string>
#include <utility>

#include "os/mutex.h"
#include "os/thread_text.h"
#include "printf_text.h"
#include "rotating_log.h"

namespace {

// Never destroyed: other threads may still trace while the process ends.
RotatingLog& trace_log() {
    static RotatingLog& log = *new RotatingLog("ZENDRIX_TRACE", "trace.log", 16 << 20);
    return log;
}

class Levels {
public:
    int set(const char* channel, int level) {
        os::LockGuard lock(m_mutex);
        return std::exchange(m_channels[channel], level);
    }

    int of(const char* channel) {
        os::LockGuard lock(m_mutex);
        const auto found = m_channels.find(channel);
        return found == m_channels.end() ? 0 : found->second;
    }

private:
    os::Mutex m_mutex;
    std::map<std::string, int, std::less<>> m_channels OS_GUARDED_BY(m_mutex);
};

Levels& levels() {
    static Levels& instance = *new Levels;
    return instance;
}

// Asked first and without a lock: most of the time tracing is off.
std::atomic<int> master_level{0};

struct Place {
    os::ThreadText<256> file;
    int line = 0;
    os::ThreadText<256> channel;
    int level = 0;
};

thread_local Place next_place;

std::string placed(const Place& place, const std::string& text) {
    if (place.file.empty() && place.channel.empty()) return text;
    return std::string(place.channel.c_str()) + ":" + std::to_string(place.level) + " " + place.file.c_str() +
           "(" + std::to_string(place.line) + "): " + text;
}

}  // namespace

extern "C" {

int _MTrace_SetLevel(const char* channel, unsigned level) {
    return levels().set(channel, static_cast<int>(level));
}

int MTrace_SetMasterLevel(unsigned level) { return master_level.exchange(static_cast<int>(level)); }

bool _MTrace_TestLevel(const char* channel, int level) {
    return MTrace_TestMasterLevel(level) && levels().of(channel) >= level;
}

bool MTrace_TestMasterLevel(int level) { return master_level.load(std::memory_order_relaxed) >= level; }

void _MTrace_Location(const char* file, int line, const char* channel, int level) {
    next_place.file.keep(file);
    next_place.line = line;
    next_place.channel.keep(channel);
    next_place.level = level;
}

void _MTrace_Always(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const std::string text = printf_text(format, args);
    va_end(args);
    trace_log().write(placed(std::exchange(next_place, Place{}), text));
}

void MTrace_SetFile(const char* path) { trace_log().set_file(path); }
}
