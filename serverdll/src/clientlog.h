// The client's lines in the error log.
#pragma once

#include <string>

namespace serverdll {

// `file` and `line` are the place that reports: the name of the source without its folder, __LINE__.
void log_error(const char* file, int line, const std::string& text);

}  // namespace serverdll
