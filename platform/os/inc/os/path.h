// Paths as the system wants them. Everything above this folder builds paths with '\' or '/' as it likes.
#pragma once

#include <string>

namespace os {

// A path that begins with "\\?\" is verbatim: of what follows, every character but the system's own separator
// means itself. FileSystem of os/file.h takes such paths too.
bool is_verbatim(const std::string& path);

// The system's own separator.
char native_separator();

// The path of the entry that a listing of the directory gave. `directory` ends in a separator. It is the two
// together, or verbatim where these would mean something else, as a file's name with a '\' in it does on
// POSIX, or nothing, as a path too long does on Windows.
std::string entry_path(const std::string& directory, const std::string& name);

// The path with every separator turned into the system's own; a verbatim path as the system knows it.
std::string native_path(const std::string& path);

// Whether a path may begin with a letter and a colon that name a drive.
bool has_drive_letters();

// The path from the root, with the system's separators and "." and ".." resolved by their text alone; nothing
// needs to be there. False if the system can't tell.
bool full_path(const std::string& path, std::string& full);

}  // namespace os
