#include <algorithm>

#include "os/terminal.h"
#include "windows_api.h"

namespace os {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// The system has no wait for a pipe that another program fills.
constexpr milliseconds pipe_slice{5};

HANDLE input() { return ::GetStdHandle(STD_INPUT_HANDLE); }

DWORD count_of(milliseconds time) {
    return static_cast<DWORD>(std::clamp<milliseconds::rep>(time.count(), 0, 0x7FFFFFFF));
}

milliseconds until(Clock::time_point end) { return std::chrono::ceil<milliseconds>(end - Clock::now()); }

bool is_key_press(const INPUT_RECORD& record) {
    return record.EventType == KEY_EVENT && record.Event.KeyEvent.bKeyDown;
}

// A console tells of the mouse, of its size and of keys that are let go, too: those would let a read wait.
bool has_key_press() {
    INPUT_RECORD record;
    DWORD count = 0;
    while (::PeekConsoleInputA(input(), &record, 1, &count) && count > 0) {
        if (is_key_press(record)) return true;
        ::ReadConsoleInputA(input(), &record, 1, &count);
    }
    return false;
}

bool wait_for_console(Clock::time_point end) {
    do {
        if (::WaitForSingleObject(input(), count_of(until(end))) != WAIT_OBJECT_0) return false;
        if (has_key_press()) return true;
    } while (Clock::now() < end);
    return false;
}

bool wait_for_pipe(Clock::time_point end) {
    for (;;) {
        DWORD count = 0;
        // One that can't be looked at has ended, which a read tells.
        if (!::PeekNamedPipe(input(), nullptr, 0, nullptr, &count, nullptr) || count > 0) return true;
        const milliseconds left = until(end);
        if (left <= milliseconds(0)) return false;
        ::Sleep(count_of(std::min(left, pipe_slice)));
    }
}

}  // namespace

bool input_is_terminal() {
    DWORD mode = 0;
    return ::GetConsoleMode(input(), &mode) != 0;
}

bool wait_for_input(milliseconds at_most) {
    const Clock::time_point end = Clock::now() + at_most;
    if (input_is_terminal()) return wait_for_console(end);
    return ::GetFileType(input()) == FILE_TYPE_PIPE ? wait_for_pipe(end) : true;
}

std::ptrdiff_t read_input(char* bytes, std::size_t size) {
    DWORD count = 0;
    if (::ReadFile(input(), bytes, static_cast<DWORD>(std::min<std::size_t>(size, 1U << 30)), &count,
                   nullptr))
        return static_cast<std::ptrdiff_t>(count);
    // The writer's end of a pipe is gone.
    return ::GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
}

}  // namespace os
