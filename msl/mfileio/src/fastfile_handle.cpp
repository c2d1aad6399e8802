#include "fastfile_handle.h"

#include <algorithm>
#include <array>

#include "errtrace.h"
#include "fastfile.h"
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

bool openwritefile(const char* path, int mode, os::FileHandle& file) {
    constexpr std::array modes{os::OpenMode::CreateNew, os::OpenMode::Append, os::OpenMode::Truncate};
    const int kind = mode & ~MFASTFILE_WRITE_THROUGH;
    file = os::no_file;
    if (kind < 0 || kind >= static_cast<int>(modes.size())) {
        MERRTRACE_REPORT(source, "openwritefile(): unknown mode %d for %s", kind, path);
        return false;
    }
    const bool write_through = (mode & MFASTFILE_WRITE_THROUGH) != 0;
    file = os::files().open(path, modes[static_cast<std::size_t>(kind)], write_through);
    if (file != os::no_file) return true;
    MERRTRACE_REPORT(source, "openwritefile(): CreateFile(\"%s\") failed: %d", path, os::last_error());
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

bool write64(os::FileHandle file, const void* data, std::uint64_t size, std::uint64_t& done) {
    done = 0;
    do {
        std::uint32_t count = 0;
        if (!os::files().write(file, static_cast<const char*>(data) + done, piece(size - done), count)) {
            MERRTRACE_REPORT(source, "%s(): WriteFile() failed: %u", "write64",
                             static_cast<unsigned>(os::last_error()));
            return false;
        }
        done += count;
        if (count == 0) break;
    } while (size > largest_piece && done < size);
    return true;
}

}  // namespace fastfile
