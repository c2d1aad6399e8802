// Goes through directories and looks at their entries.
//
// The walker has a current directory of its own: that of the process stays where it is. An object is used
// from one thread at a time.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "os/file.h"

class MDirectoryWalker {
public:
    // Starts in the process's current directory.
    MDirectoryWalker();

    // Goes to a directory; a relative path starts from where the walker is. False, and it stays where it is,
    // if there is no such directory.
    bool SetPath(const char* path);

    // Where the walker is: a path from the root.
    const std::string& GetPath() const { return m_path; }

    // The entries of the walker's directory, "." and ".." with them, sorted by name; null when there are no
    // more. The name is good until the next call; the type is that of file_type, and `type` may be null.
    const char* GetFirst(char* type);
    const char* GetNext(char* type);

private:
    std::string m_path;
    std::vector<os::DirectoryEntry> m_found;
    std::size_t m_next = 0;
};
