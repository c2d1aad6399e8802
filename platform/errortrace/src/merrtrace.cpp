#include "merrtrace.h"

#include <cstdarg>
#include <string>
#include <utility>
#include <vector>

#include "merrlog.h"
#include "printf_text.h"

namespace {

struct Place {
    int level = 0;
    std::string source;
    int line = 0;
};

struct Record {
    Place place;
    std::string text;
};

using Context = std::vector<Record>;

thread_local Place next_place;
thread_local std::vector<Context> contexts;

void write(const Record& record) {
    _MErrLog_Location(record.place.level, record.place.source.c_str(), record.place.line);
    _MErrLog_Add("%s", record.text.c_str());
}

}  // namespace

extern "C" {

void _MErrTrace_Location(int level, const char* source, int line) {
    next_place = {level, source ? source : "", line};
}

void _MErrTrace_Add(const char* format, ...) {
    Place place = std::exchange(next_place, Place{});
    if (contexts.empty()) return;
    va_list args;
    va_start(args, format);
    contexts.back().push_back({std::move(place), printf_text(format, args)});
    va_end(args);
}

void MErrTrace_BeginContext(void) { contexts.emplace_back(); }

void MErrTrace_EndContext(void) {
    if (!contexts.empty()) contexts.pop_back();
}

void MErrTrace_ClearContext(void) {
    if (!contexts.empty()) contexts.back().clear();
}

void _MErrTrace_DumpContextToMErrLog(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const Record last{std::exchange(next_place, Place{}), printf_text(format, args)};
    va_end(args);
    Context records;
    if (!contexts.empty()) records.swap(contexts.back());
    for (const Record& record : records) write(record);
    write(last);
}
}
