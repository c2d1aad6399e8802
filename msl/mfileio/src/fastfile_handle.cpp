#include "fastfile_handle.h"

#include <algorithm>

#include "errtrace.h"
#include "os/error.h"

namespace fastfile {
namespace {

// What the system takes in one call.
constexpr std::uint64_t largest_piece = 0xFFFFFFFF;

std::uint32_t piece(std::uint64_t rest) { return static_cast<std::uint32_t>(std::min(rest, largest_piece)); }

}  // namespace

bool openfile(const char* path, os::FileHandle& file, int& error) {
    file = os::files().open(path, os::OpenMode::Read, false);
    if (file != os::no_file) return true;
    error = os::last_error();
    MERRTRACE_REPORT(source, "openfile(): CreateFile(\"%s\") failed: %d", path, error);
    return false;
}

bool read64(os::FileHandle file, void* target, std::uint64_t size, std::uint64_t& done) {
    done = 0;
    do {
        std::uint32_t count = 0;
        if (!os::files().read(file, static_cast<char*>(target) + done, piece(size - done), count)) {
            MERRTRACE_REPORT(source, "%s(): ReadFile() failed: %u", "read64",
                             static_cast<unsigned>(os::last_error()));
            return false;
        }
        done += count;
        if (count == 0) break;
    } while (size > largest_piece && done < size);
    return true;
}

}  // namespace fastfile
