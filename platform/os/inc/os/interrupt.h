// Interrupts: Ctrl-C, and the system's wish that the program ends.
#pragma once

namespace os {

// Runs within a signal's handler, or on a thread of the system's own, whatever the program does at that time,
// and maybe again before it has returned. So it may touch lock-free atomics and call std::_Exit, and nothing
// else.
using InterruptHandler = void (*)();

// Sets what Ctrl-C does (on Windows, Ctrl-Break too), and returns what was set before. Null: what it does
// without any handler, as ending the program. One thread at a time may set it.
InterruptHandler set_interrupt_handler(InterruptHandler handler);

// Likewise for the wish that the program ends: SIGTERM; on Windows, that its console is closed or the system
// goes down, after which the program has a few seconds.
InterruptHandler set_end_handler(InterruptHandler handler);

// As if Ctrl-C came now, for this process alone. Returns when the handler has.
void interrupt_this_process();

}  // namespace os
