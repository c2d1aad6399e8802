// What the file layer does with handles: opening, and reads and writes of any size.
#pragma once

#include <cstddef>
#include <cstdint>

#include "os/file.h"

namespace fastfile {

constexpr const char* source = "msl/mfileio/src/fastfile";

// Opens for reading. On failure `error` is the system's number.
bool openfile(const char* path, os::FileHandle& file, int& error);

// Opens for writing in one of the modes of a writer.
bool openwritefile(const char* path, int mode, os::FileHandle& file);

// Reads until `size` bytes came or the file ends.
bool read64(os::FileHandle file, void* target, std::uint64_t size, std::uint64_t& done);

// Writes until all is written or the system takes no more.
bool write64(os::FileHandle file, const void* data, std::uint64_t size, std::uint64_t& done);

}  // namespace fastfile
