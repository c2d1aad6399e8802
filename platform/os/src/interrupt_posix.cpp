#include <signal.h>

#include <atomic>

#include "os/interrupt.h"

namespace os {
namespace {

struct Source {
    const int signal;
    std::atomic<InterruptHandler> handler{nullptr};
    struct sigaction outside {};  // what was there before our handler
};
static_assert(std::atomic<InterruptHandler>::is_always_lock_free, "a signal's handler needs it");

Source keyboard{SIGINT};
Source end_of_program{SIGTERM};

extern "C" void run_handler(int signal) {
    const Source& source = signal == SIGINT ? keyboard : end_of_program;
    if (const InterruptHandler handler = source.handler) handler();
}

// A signal that comes meanwhile meets either what was there before or what is there afterwards.
InterruptHandler exchange(Source& source, InterruptHandler handler) {
    const InterruptHandler previous = source.handler;
    if (previous && !handler) ::sigaction(source.signal, &source.outside, nullptr);
    source.handler = handler;
    if (handler && !previous) {
        struct sigaction action {};
        action.sa_handler = run_handler;
        action.sa_flags = SA_RESTART;
        ::sigemptyset(&action.sa_mask);
        ::sigaction(source.signal, &action, &source.outside);
    }
    return previous;
}

}  // namespace

InterruptHandler set_interrupt_handler(InterruptHandler handler) { return exchange(keyboard, handler); }

InterruptHandler set_end_handler(InterruptHandler handler) { return exchange(end_of_program, handler); }

void interrupt_this_process() { ::raise(SIGINT); }

}  // namespace os
