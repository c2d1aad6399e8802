#include "fileops.h"

#include <cstring>
#include <vector>

#include "errtrace.h"
#include "os/error.h"
#include "os/file.h"

namespace {

constexpr const char* source = "msl/mfileio/src/fileops";

bool is_separator(char c) { return c == '\\' || c == '/'; }

const char* last_separator(const char* path) {
    const char* last = nullptr;
    for (const char* p = path; *p; ++p) {
        if (is_separator(*p)) last = p;
    }
    return last;
}

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

char* file_dirname(const char* path, char* target) {
    const char* const last = last_separator(path);
    if (!last) return nullptr;
    const auto length = static_cast<std::size_t>(last - path);
    std::memcpy(target, path, length);
    target[length] = '\\';
    target[length + 1] = '\0';
    return target;
}

const char* file_basename(const char* path) {
    if (!*path) return nullptr;
    const char* const last = last_separator(path);
    return last ? last + 1 : path;
}
