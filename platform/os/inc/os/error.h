// The system's error numbers.
#pragma once

#include <string>

namespace os {

// The number of the last failure on this thread, and the system's words for a number. A call of the system
// that succeeds may change the number, too.
int last_error();
std::string error_text(int error);

// For what stands in for the system, and fails in its place.
void set_last_error(int error);

// The words for errno, by which the C library itself tells a failure.
std::string errno_text();

}  // namespace os
