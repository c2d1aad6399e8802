#include <windows.h>

#include <atomic>

#include "os/interrupt.h"

namespace os {
namespace {

std::atomic<InterruptHandler> keyboard{nullptr};
std::atomic<InterruptHandler> end_of_program{nullptr};

bool is_from_keyboard(DWORD event) { return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT; }

BOOL WINAPI on_console_event(DWORD event) {
    const InterruptHandler handler = is_from_keyboard(event) ? keyboard : end_of_program;
    if (!handler) return FALSE;
    handler();
    // The system ends the program once this has returned: the program may end itself before.
    if (!is_from_keyboard(event)) ::Sleep(INFINITE);
    return TRUE;
}

InterruptHandler exchange(std::atomic<InterruptHandler>& source, InterruptHandler handler) {
    static const BOOL listening = ::SetConsoleCtrlHandler(on_console_event, TRUE);
    static_cast<void>(listening);
    return source.exchange(handler);
}

}  // namespace

InterruptHandler set_interrupt_handler(InterruptHandler handler) { return exchange(keyboard, handler); }

InterruptHandler set_end_handler(InterruptHandler handler) { return exchange(end_of_program, handler); }

void interrupt_this_process() {
    if (const InterruptHandler handler = keyboard)
        handler();
    else
        ::ExitProcess(static_cast<UINT>(STATUS_CONTROL_C_EXIT));
}

}  // namespace os
