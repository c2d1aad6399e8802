// Paths as the system wants them. Everything above this folder builds paths with '\' or '/' as it likes.
#pragma once

#include <string>

namespace os {

// The path with every separator turned into the system's own.
std::string native_path(const std::string& path);

// Whether a path may begin with a letter and a colon that name a drive.
bool has_drive_letters();

// The path from the root, with "." and ".." resolved by their text alone; nothing needs to be there. False if
// the system can't tell.
bool full_path(const std::string& path, std::string& full);

}  // namespace os
