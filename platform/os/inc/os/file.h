// Files as the file layer needs them: unbuffered handles, what a path names, and the few operations on names.
//
// Paths take '\' and '/' alike. Every operation returns whether it succeeded; last_error() of
// os/error.h then has the reason. A file system may be used on any thread, a
// handle on one at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace os {

using FileHandle = std::intptr_t;
constexpr FileHandle no_file = -1;

enum class OpenMode {
    Read,       // an existing file
    CreateNew,  // for writing; fails if there is one
    Append,     // for writing at the end; made if need be
    Truncate,   // for writing from an empty file; made if need be
};

enum class Access { Exists, ReadWrite };

// An entry of a directory. The name has no directory in it.
struct DirectoryEntry {
    std::string name;
    bool is_directory = false;
    bool is_hidden = false;  // hidden or of the system
};

// What a path names.
struct FileInfo {
    std::int64_t size = 0;
    bool is_directory = false;
};

class FileSystem {
public:
    virtual ~FileSystem() = default;

    // no_file on failure. A directory can't be opened. With `write_through` each write returns only when the
    // data is on the disk.
    virtual FileHandle open(const char* path, OpenMode mode, bool write_through) = 0;

    // Reads `size` bytes, fewer at the end of the file; `done` is the count. Writing may come short, too.
    virtual bool read(FileHandle file, void* target, std::uint32_t size, std::uint32_t& done) = 0;
    virtual bool write(FileHandle file, const void* data, std::uint32_t size, std::uint32_t& done) = 0;

    // Returns when what was written is on the disk.
    virtual bool flush(FileHandle file) = 0;

    // The handle is gone afterwards, also on failure.
    virtual bool close(FileHandle file) = 0;

    // Makes an empty file of a new name, beginning with `prefix`, in the directory ("" and "." are the
    // current one), and stores its path.
    virtual bool make_temporary(const char* directory, const char* prefix, std::string& path) = 0;

    // Gives an open file the access rights of the one that it is to replace, as far as the system lets us.
    // False if there is no such file or it has other rights afterwards.
    virtual bool take_rights(FileHandle file, const char* of) = 0;

    virtual bool info(const char* path, FileInfo& out) = 0;
    virtual bool access(const char* path, Access kind) = 0;

    // The entries that match, sorted by name; at least one on success. "*.*" as the last part means every
    // entry, "." and ".." with them; else the path of an existing entry means that one, and otherwise '*' and
    // '?' in the last part match. Of a verbatim path (os/path.h) no last part means every entry, and any
    // other the one entry of that name.
    virtual bool find(const char* pattern, std::vector<DirectoryEntry>& out) = 0;

    virtual bool remove(const char* path) = 0;

    // Replaces an existing file of the new name.
    virtual bool rename(const char* from, const char* to) = 0;

    // Lets the owner, and nobody else, read and write.
    virtual bool make_writable(const char* path) = 0;
};

// The file system in force: the system's, unless it was replaced.
FileSystem& files();

// Puts another one in force, or with null the system's again, and returns the one that was in force, on which
// a wrapper can stand. The caller owns it, and it must live until it is out of force.
FileSystem* replace_files(FileSystem* file_system);

}  // namespace os
