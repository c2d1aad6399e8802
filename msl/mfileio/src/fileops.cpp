#include "fileops.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "errtrace.h"
#include "os/error.h"
#include "os/file.h"
#include "os/path.h"

namespace {

constexpr const char* source = "msl/mfileio/src/fileops";

// As the system's call has it, its final NUL with it.
constexpr std::size_t longest_path = 260;

int type_code(const os::DirectoryEntry& entry) {
    if (entry.is_directory) return 'd';
    return entry.is_hidden ? ' ' : '-';
}

}  // namespace

int file_type(const char* path) {
    std::vector<os::DirectoryEntry> found;
    if (os::files().find(path, found)) return type_code(found.front());
    MERRTRACE_REPORT(source, "%s(): _findfirst(\"%s\") failed: %s", "file_type", path,
                     os::error_text(os::last_error()).c_str());
    return -1;
}

std::int64_t file_size(const char* path) {
    const int type = file_type(path);
    if (type == -1) return -1;
    if (type == 'd') return 0;
    os::FileInfo info;
    return os::files().info(path, info) ? info.size : -1;
}

bool file_exists(const char* path) { return os::files().access(path, os::Access::Exists); }

bool file_remove(const char* path) { return os::files().remove(path); }

bool file_rename(const char* from, const char* to) {
    if (os::files().rename(from, to)) return true;
    MERRTRACE_REPORT(source, "file_rename(): MoveFileEx(%s,%s) failed: %u", from, to,
                     static_cast<unsigned>(os::last_error()));
    return false;
}

bool file_make_writable(const char* path) {
    os::FileSystem& files = os::files();
    if (!files.access(path, os::Access::Exists)) return false;
    return files.access(path, os::Access::ReadWrite) || files.make_writable(path);
}

bool file_is_not_directory(const char* path) {
    os::FileInfo info;
    return os::files().info(path, info) && !info.is_directory;
}

char* file_read_first_line(const char* path, char* buffer, int size) {
    std::FILE* const file = std::fopen(os::native_path(path).c_str(), "r");
    if (!file) return nullptr;
    char* const line = std::fgets(buffer, size, file);
    std::fclose(file);
    return line;
}

char* file_fullpath(const char* path, char* target) {
    std::string full;
    if (!os::full_path(path, full) || full.size() >= longest_path) return nullptr;
    file_backslashes(full.data());
    if (full.ends_with('\\')) full.pop_back();
    if (file_type(full.c_str()) == -1) return nullptr;
    if (!target) target = static_cast<char*>(std::malloc(longest_path));
    if (target) std::memcpy(target, full.c_str(), full.size() + 1);
    return target;
}

bool file_is_inside(const char* path, const char* directory) {
    std::array<char, longest_path> inner;
    std::array<char, longest_path> outer;
    if (!file_fullpath(path, inner.data()) || !file_fullpath(directory, outer.data())) return false;
    const std::string_view full = inner.data();
    const std::string_view start = outer.data();
    return full.size() > start.size() && full.starts_with(start) && full[start.size()] == '\\';
}
