// The running program.
#pragma once

#include <string>

namespace os {

// The directory of the program's file, with a separator at its end; empty if the system doesn't tell.
std::string program_directory();

// The file name of a shared library of this name, as "libm2zendrix.so".
std::string library_file_name(const std::string& name);

// Does the stream end at a terminal, where a person watches?
bool output_is_terminal();
bool error_output_is_terminal();

}  // namespace os
