// Well-known directories.
#pragma once

#include <string>

namespace os {

// The directory, of the product's own, for what a user's programs keep between runs and may lose, such as
// logs; without a separator at its end, and perhaps not there yet. Empty if the system names no such place.
std::string user_state_directory();

// Makes the directory and those above it. True if it is there afterwards.
bool make_directories(const std::string& path);

// The current directory of the process. False, with last_error() of os/error.h, if the system refuses.
bool current_directory(std::string& path);

// The system's directory for files of a moment, with a separator at its end; whether it is there is not
// looked at.
std::string temporary_directory();

}  // namespace os
