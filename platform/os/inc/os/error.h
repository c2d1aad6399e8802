// The system's error numbers.
#pragma once

#include <string>

namespace os {

// The number of the last failure on this thread, and the system's words for a number.
int last_error();
std::string error_text(int error);

}  // namespace os
