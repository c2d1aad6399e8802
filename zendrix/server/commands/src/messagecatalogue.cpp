#include "messagecatalogue.h"

#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

struct Message {
    const char* full = nullptr;  // null where a number is unassigned
    const char* bare = nullptr;
};

#define ERROR(text) \
    { "error \"" text "\"", text }
#define WARNING(text) \
    { "warning \"" text "\"", text }
#define EVENT(text) \
    { "event \"" text "\"", text }

// In each table a row stands for the number after that of the row above.

constexpr int first_error = 1;
constexpr Message errors[] = {
    ERROR("syntax invalid"),  // 1
    ERROR("missing argument"),
    ERROR("invalid argument"),
    ERROR("invalid axis"),
    ERROR("unknown axis"),
    ERROR("no axis specified"),
    ERROR("unknown component"),
    ERROR("invalid component"),
    ERROR("argument out of range"),
    ERROR("aborted"),  // 10
    ERROR("transaction: t-id missing"),
    ERROR("transaction: t-id invalid"),
    ERROR("t-id unused"),
    ERROR("transaction: command missing or invalid"),
    ERROR("transaction: command unknown"),
    ERROR("internal error"),
    ERROR("not implemented"),
    ERROR("wrong state"),
    ERROR("command already active"),
    ERROR("undefined probesystem"),  // 20
    ERROR("undefined probesystem id"),
    ERROR("probesystem not loaded"),
    ERROR("probesystem not supported"),
    ERROR("probesystem already defined"),
    ERROR("unknown probesystem"),
    ERROR("undefined probe"),
    ERROR("undefined tip"),
    ERROR("invalid probe number"),
    ERROR("invalid tip number"),
    ERROR("tip already defined"),  // 30
    ERROR("can't delete active probe"),
    ERROR("probe already loaded"),
    ERROR("probe already unloaded"),
    ERROR("probe not in magazine"),
    ERROR("probe not loaded"),
    ERROR("no probe changer"),
    ERROR("invalid magazine slot"),
    ERROR("slot already free"),
    ERROR("slot already in use"),
    ERROR("probe already in different slot"),  // 40
    ERROR("too many points"),
    ERROR("probe: no contact"),
    ERROR("machine: emergency"),
    ERROR("machine: not initialized"),
    ERROR("buffer overrun"),
    ERROR("keypad: enabled"),
    ERROR("keypad: disabled"),
    ERROR("can't access shared memory"),
    ERROR("shared memory too small"),
    ERROR("no imagefifo active"),  // 50
};

constexpr int first_warning = 10000;
constexpr Message warnings[] = {
    WARNING("machine: emergency"),       WARNING("machine: not initialized"),
    WARNING("argument out of range"),    WARNING("ambiguous tip, using first"),
    WARNING("operation with no effect"),
};

constexpr int first_event = 1;
constexpr Message events[] = {
    EVENT("capabilities changed"),  // 1
    EVENT("keypad: changed"),
    EVENT("measurement begin"),
    EVENT("preview begin"),
    EVENT("probesystem changed"),
    EVENT("probe: loaded"),
    EVENT("probe: unloaded"),
    EVENT("machine changed"),
    EVENT("probe: contact"),
    EVENT("probe: contact lost"),  // 10
    EVENT("movement: begin"),
    EVENT("movement: end"),
    EVENT("measurement: end"),
    EVENT("keypad: enabled"),
    EVENT("keypad: disabled"),
    EVENT("service: maintenance rate exceeded"),
    EVENT("keypad: key-start"),
    EVENT("keypad: key-stop"),
    EVENT("keypad: key-monitor"),
    EVENT("keypad: key-enable x z"),  // 20
    EVENT("keypad: key-disable x z"),
    EVENT("keypad: key-enable z"),
    EVENT("keypad: key-enable c hb"),
    EVENT("keypad: key-disable c hb"),
    EVENT("keypad: key-enable y"),
    EVENT("keypad: key-disable y"),
    EVENT("keypad: key-enable c sw"),
    EVENT("keypad: key-disable c sw"),
    EVENT("keypad: key-movezero z+"),
    EVENT("keypad: key-movezero z-"),  // 30
    EVENT("keypad: key-movezero x+"),
    EVENT("keypad: key-movezero x-"),
    EVENT("keypad: key-get value"),
    EVENT("keypad: key-zero x"),
    EVENT("keypad: key-zero z"),
    EVENT("keypad: key-1"),
    EVENT("keypad: key-2"),
    EVENT("keypad: key-3"),
    EVENT("keypad: key-4"),
    EVENT("keypad: key-5"),  // 40
    EVENT("keypad: key-6"),
    EVENT("keypad: key-7"),
    EVENT("keypad: key-8"),
    EVENT("keypad: emergency active"),
    EVENT("keypad: emergency passive"),
    EVENT("keypad: key-enable tailstock"),
    EVENT("keypad: key-disable tailstock"),
    EVENT("keypad: key-zfree"),
    EVENT("keypad: key-dyn"),
    EVENT("keypad: key-mv"),  // 50
    EVENT("keypad: key-enable x"),
    EVENT("spindle clamped"),
    EVENT("spindle unclamped"),
    EVENT("pedal value"),
    EVENT("spin: changed"),
    EVENT("air: pressure active"),
    EVENT("air: pressure passive"),
    EVENT("keypad: key-enable x+"),
    EVENT("keypad: key-enable x-"),
    EVENT("keypad: key-enable z+"),  // 60
    EVENT("keypad: key-enable z-"),
    EVENT("brevlan: there is data to read from application"),
    EVENT("door open"),
    EVENT("door closed"),
    EVENT("keypad: key-enable c"),
    EVENT("keypad: key-enable hb"),
    EVENT("keypad: key-enable sw"),
    {},  // 68
    EVENT("keypad: key-disable"),
    EVENT("keypad: key-enable z/hw"),  // 70
    EVENT("keypad: key-enable x/z/hb"),
    EVENT("keypad: key-movezero hb+"),
    EVENT("keypad: key-movezero hb-"),
    EVENT("keypad: key-disable x/z/hb"),
    EVENT("keypad: key-enable ty"),
    EVENT("keypad: key-disable ty"),
    EVENT("keypad: key-level"),
    EVENT("keypad: key-ok"),
    EVENT("keypad: key-enable"),
    EVENT("keypad: key-enable z/ty"),  // 80
    EVENT("keypad: key-disable x"),
    EVENT("keypad: key-disable z/ty"),
    EVENT("keypad: key-disable hb"),
    EVENT("keypad: key-disable z"),
    EVENT("keypad: key-dmc"),
    {},  // 86
    {},  // 87
    EVENT("keypad: key-enable x1"),
    EVENT("keypad: key-enable x2"),
    EVENT("keypad: key-enable z/c"),  // 90
    EVENT("keypad: key-enable y/hb"),
    EVENT("keypad: key-disable x1"),
    EVENT("keypad: key-disable x2"),
    EVENT("keypad: key-disable z/c"),
    EVENT("keypad: key-disable y/hb"),
    EVENT("start/stop"),
};

#undef ERROR
#undef WARNING
#undef EVENT

static_assert(std::size(errors) == 50 && std::size(warnings) == 5 && std::size(events) == 96);

template <std::size_t count>
Message find(const Message (&table)[count], int first, int number) {
    const bool inside = number >= first && number - first < static_cast<int>(count);
    return inside ? table[number - first] : Message();
}

// Room for the longest text of an unknown number.
using Buffer = char[64];

const char* unknown(Buffer& buffer, const char* format, int number) {
    std::snprintf(buffer, sizeof buffer, format, number);
    return buffer;
}

int find_number(const char* (*text_of)(int), int first, int last, const char* text) {
    for (int number = first; number <= last; ++number) {
        if (std::strcmp(text_of(number), text) == 0) return number;
    }
    return 0;
}

}  // namespace

const char* error_text(int number) {
    static thread_local Buffer buffer;
    const Message message = find(errors, first_error, number);
    return message.full ? message.full : unknown(buffer, "error \"unknown error number %d\"", number);
}

const char* warning_text(int number) {
    static thread_local Buffer buffer;
    const Message message = find(warnings, first_warning, number);
    return message.full ? message.full : unknown(buffer, "warning \"unknown warning number %d\"", number);
}

const char* event_text(int number) {
    static thread_local Buffer buffer;
    const Message message = find(events, first_event, number);
    return message.full ? message.full : unknown(buffer, "event \"unknown event number %d\"", number);
}

const char* event_name(int number) {
    static thread_local Buffer buffer;
    const Message message = find(events, first_event, number);
    return message.bare ? message.bare : unknown(buffer, "unknown event number %d", number);
}

int error_number(const char* text) { return find_number(error_text, 1, 51, text); }

int warning_number(const char* text) { return find_number(warning_text, 10000, 10004, text); }
