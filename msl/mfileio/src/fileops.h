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

// Lets the owner read and write the file if it isn't so already. False if it is missing or can't be done.
bool file_make_writable(const char* path);

// False also if there is nothing.
bool file_is_not_directory(const char* path);

// Reads one line, with its end, or what fits of it, into a buffer of `size` bytes. Returns `buffer`; null if
// the file doesn't open or is empty.
char* file_read_first_line(const char* path, char* buffer, int size);

// The path from the root, with '\', of what must exist, without a separator at its end, in `target` of 260
// bytes; with null in a block that the caller frees with free(). Null if there is no such file, or the path
// is too long.
char* file_fullpath(const char* path, char* target);

// Whether the one lies, at any depth, in the other; both must exist.
bool file_is_inside(const char* path, const char* directory);

// The rest is about names alone.

// Copies what stands before the last separator, and then one '\', to `target`, which has room for two bytes
// more than the path. Returns `target`; null, and nothing is written, if the path has no separator.
char* file_dirname(const char* path, char* target);

// Points into `path`, behind the last separator; null for an empty path.
const char* file_basename(const char* path);

// Begins with a separator, or with a letter and a colon.
bool file_is_absolute(const char* path);

// The letter and the colon, overwritten by the thread's next call; null if the path has none, or the system
// has no drives.
const char* file_drive(const char* path);

// What stands before the first separator, or the separator itself if it comes first: in `target`, or in
// place. Null, and nothing is written, if there is no separator: the last part is not returned.
char* file_first_part(const char* path, char* target);
char* file_first_part(char* path);

// Points behind the last separator; null if there is none.
const char* file_last_part(const char* path);

// Takes off the last part and the separator before it, after a separator at the end. Null if there is no
// separator left then.
char* file_cut_last(char* path);

// Points to the last '.' of the last part; null if it has none.
const char* file_extension(const char* path);

// Turns '/' to '\': in `target`, or in place.
char* file_backslashes(const char* path, char* target);
char* file_backslashes(char* path);

// Appends a relative path to `path`, whose buffer is large enough, going up for "..", and staying for ".",
// but for the last part, which is taken as it is. Null, and `path` as it was, for an absolute path, or one
// that goes up too far.
char* file_join(char* path, const char* relative);

// The way from the file `from` to `to`, both absolute, in `target`, or with null in a buffer of 260 bytes
// that the thread's next call overwrites. Null if there is none, or it doesn't fit in that buffer.
char* file_relative_path(const char* from, const char* to, char* target);
