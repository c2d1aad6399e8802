#include "recording_facilities.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <memory>
#include <utility>

#include "merrlog.h"
#include "merrtrace.h"
#include "mtrace.h"
#include "os/mutex.h"

namespace {

struct Report {
    recording::Place place;
    std::string text;
};

// What the location call of a thread leaves for its next report.
struct ThreadState {
    recording::Place log_place;
    recording::Place trace_place;
    std::string channel;
    int level = 0;
    std::vector<std::vector<Report>> contexts;
};

struct Recorder {
    os::Mutex mutex;
    std::vector<Report> error_log OS_GUARDED_BY(mutex);
    std::vector<Report> error_trace OS_GUARDED_BY(mutex);
    std::vector<recording::TraceLine> trace OS_GUARDED_BY(mutex);
    std::map<std::string, int> levels OS_GUARDED_BY(mutex);
    int master_level OS_GUARDED_BY(mutex) = 0;
    std::vector<std::unique_ptr<ThreadState>> threads OS_GUARDED_BY(mutex);  // of all there ever were
};

Recorder& recorder() {
    static Recorder instance;
    return instance;
}

// The thread keeps a bare pointer: MinGW's run-time library frees a thread's memory before it destroys the
// thread's objects.
ThreadState& this_thread() {
    static thread_local ThreadState* state = nullptr;
    if (!state) {
        auto made = std::make_unique<ThreadState>();
        state = made.get();
        Recorder& r = recorder();
        os::LockGuard lock(r.mutex);
        r.threads.push_back(std::move(made));
    }
    return *state;
}

std::string format_text(const char* format, va_list args) {
    va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, args);
    text.pop_back();
    return text;
}

template <class Pick>
auto pick_all(const std::vector<Report>& reports, Pick pick) {
    std::vector<std::decay_t<decltype(pick(reports.front()))>> out;
    std::transform(reports.begin(), reports.end(), std::back_inserter(out), pick);
    return out;
}

std::string text_of(const Report& report) { return report.text; }
recording::Place place_of(const Report& report) { return report.place; }

}  // namespace

namespace recording {

void reset() {
    for (auto& context : this_thread().contexts) context.clear();
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    r.error_log.clear();
    r.error_trace.clear();
    r.trace.clear();
    r.levels.clear();
    r.master_level = 0;
}

std::vector<std::string> error_log() {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return pick_all(r.error_log, text_of);
}

std::vector<std::string> error_trace() {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return pick_all(r.error_trace, text_of);
}

std::vector<Place> error_log_places() {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return pick_all(r.error_log, place_of);
}

std::vector<Place> error_trace_places() {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return pick_all(r.error_trace, place_of);
}

std::vector<TraceLine> trace() {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return r.trace;
}

void set_trace_level(int level) {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    r.levels["default"] = level;
    r.master_level = level;
}

std::size_t open_contexts() { return this_thread().contexts.size(); }

}  // namespace recording

extern "C" {

void _MErrLog_Location(int, const char* source, int line) { this_thread().log_place = {source, line}; }

void _MErrLog_Add(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = format_text(format, args);
    va_end(args);
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    r.error_log.push_back({this_thread().log_place, std::move(text)});
}

void MErrLog_SetFile(const char*) {}

void _MErrTrace_Location(int, const char* source, int line) { this_thread().trace_place = {source, line}; }

void _MErrTrace_Add(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const Report report{this_thread().trace_place, format_text(format, args)};
    va_end(args);
    if (!this_thread().contexts.empty()) this_thread().contexts.back().push_back(report);
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    r.error_trace.push_back(report);
}

void MErrTrace_BeginContext(void) { this_thread().contexts.emplace_back(); }

void MErrTrace_EndContext(void) {
    if (!this_thread().contexts.empty()) this_thread().contexts.pop_back();
}

void MErrTrace_ClearContext(void) {
    if (!this_thread().contexts.empty()) this_thread().contexts.back().clear();
}

void _MErrTrace_DumpContextToMErrLog(const char* format, ...) {
    va_list args;
    va_start(args, format);
    Report last{this_thread().trace_place, format_text(format, args)};
    va_end(args);
    std::vector<Report> reports;
    if (!this_thread().contexts.empty()) reports.swap(this_thread().contexts.back());
    reports.push_back(std::move(last));
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    r.error_log.insert(r.error_log.end(), reports.begin(), reports.end());
}

int _MTrace_SetLevel(const char* channel, unsigned level) {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return std::exchange(r.levels[channel], static_cast<int>(level));
}

int MTrace_SetMasterLevel(unsigned level) {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return std::exchange(r.master_level, static_cast<int>(level));
}

bool _MTrace_TestLevel(const char* channel, int level) {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    const auto found = r.levels.find(channel);
    return found != r.levels.end() && found->second >= level && r.master_level >= level;
}

bool MTrace_TestMasterLevel(int level) {
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    return r.master_level >= level;
}

void _MTrace_Location(const char*, int, const char* channel, int level) {
    this_thread().channel = channel;
    this_thread().level = level;
}

void _MTrace_Always(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::string text = format_text(format, args);
    va_end(args);
    Recorder& r = recorder();
    os::LockGuard lock(r.mutex);
    r.trace.push_back({this_thread().channel, this_thread().level, std::move(text)});
}

void MTrace_SetFile(const char*) {}
}
