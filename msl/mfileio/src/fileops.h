// Small questions about files and path names, and operations that need no open file.
//
// Paths are NUL-terminated and take '\' and '/' alike; a built path uses '\'. Failures answer with -1, false
// or null; file_type and file_rename also report them to the error trace.
#pragma once

#include <cstdint>

// 'd' for a directory, ' ' for a hidden file or one of the system, '-' for any other file, -1 if there is
// none. A pattern means its first match.
int file_type(const char* path);

// The size in bytes, 0 for a directory, -1 if there is no such file.
std::int64_t file_size(const char* path);

bool file_exists(const char* path);

bool file_remove(const char* path);

// Replaces an existing file.
bool file_rename(const char* from, const char* to);

// Copies what stands before the last separator, and then one '\', to `target`, which has room for two bytes
// more than the path. Returns `target`; null, and nothing is written, if the path has no separator.
char* file_dirname(const char* path, char* target);

// Points into `path`, behind the last separator; null for an empty path.
const char* file_basename(const char* path);
