// Standard input and output, where a person or another program is at the other end.
#pragma once

#include <chrono>
#include <cstddef>

namespace os {

bool input_is_terminal();

// Waits until standard input has something to read or has ended; false when the time is over, or a signal
// came, before.
bool wait_for_input(std::chrono::milliseconds at_most);

// Reads what is there, up to `size` bytes, waiting if nothing is. Returns the count; 0 at the end; -1 if it
// failed, with the reason in last_error() of os/error.h.
std::ptrdiff_t read_input(char* bytes, std::size_t size);

}  // namespace os
