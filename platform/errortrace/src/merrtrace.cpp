#include "merrtrace.h"

#include <cstdarg>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "merrlog.h"
#include "os/thread_text.h"
#include "printf_text.h"

namespace {

struct Place {
    int level = 0;
    os::ThreadText<256> source;
    int line = 0;
};

struct Record {
    Place place;
    std::string text;
};

struct Context {
    Context* outer;
    std::vector<Record> records;
};

// Neither has a destructor: os/thread_text.h says why.
thread_local Place next_place;
thread_local Context* innermost = nullptr;

void write(const Record& record) {
    _MErrLog_Location(record.place.level, record.place.source.c_str(), record.place.line);
    _MErrLog_Add("%s", record.text.c_str());
}

}  // namespace

extern "C" {

void _MErrTrace_Location(int level, const char* source, int line) {
    next_place.level = level;
    next_place.source.keep(source);
    next_place.line = line;
}

void _MErrTrace_Add(const char* format, ...) {
    const Place place = std::exchange(next_place, Place{});
    if (!innermost) return;
    va_list args;
    va_start(args, format);
    innermost->records.push_back({place, printf_text(format, args)});
    va_end(args);
}

void MErrTrace_BeginContext(void) { innermost = new Context{innermost, {}}; }

void MErrTrace_EndContext(void) {
    if (!innermost) return;
    const std::unique_ptr<Context> ended(innermost);
    innermost = ended->outer;
}

void MErrTrace_ClearContext(void) {
    if (innermost) innermost->records.clear();
}

void _MErrTrace_DumpContextToMErrLog(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const Record last{std::exchange(next_place, Place{}), printf_text(format, args)};
    va_end(args);
    std::vector<Record> records;
    if (innermost) records.swap(innermost->records);
    for (const Record& record : records) write(record);
    write(last);
}
}
