// What can be said of path names without looking at any file.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "ascii.h"
#include "fileops.h"
#include "os/path.h"

namespace {

bool is_separator(char c) { return c == '\\' || c == '/'; }

const char* first_separator(const char* path) {
    const char* const found = std::find_if(path, path + std::strlen(path), is_separator);
    return *found ? found : nullptr;
}

const char* last_separator(const char* path) {
    for (const char* p = path + std::strlen(path); p != path;) {
        if (is_separator(*--p)) return p;
    }
    return nullptr;
}

bool has_drive(const char* path) {
    const char letter = ascii::to_upper(path[0]);
    return letter >= 'A' && letter <= 'Z' && path[1] == ':';
}

// Appends one part with a separator before it.
void append(std::string& path, const std::string& part) {
    if (!path.empty()) path += '\\';
    path += part;
}

// Takes the last part off; false if there is only one.
bool cut_last(std::string& path) {
    if (!path.empty() && is_separator(path.back())) path.pop_back();
    const std::size_t last = path.find_last_of("\\/");
    if (last != path.npos) path.erase(last);
    return last != path.npos;
}

bool join(std::string& path, const char* relative) {
    if (file_is_absolute(relative)) return false;
    if (!path.empty() && is_separator(path.back())) {
        if (path.size() == 1) {
            path += relative;
            return true;
        }
        path.pop_back();
    }
    while (const char* const end = first_separator(relative)) {
        const std::string part(relative, end);
        if (part == ".." && !cut_last(path)) return false;
        if (part != ".." && part != ".") append(path, part);
        relative = end + 1;
    }
    if (*relative) append(path, relative);
    return true;
}

// Goes past the leading parts that both have in common.
void skip_common(const char*& a, const char*& b) {
    while (true) {
        const char* const a_end = first_separator(a);
        const char* const b_end = first_separator(b);
        if (!a_end || !b_end || !std::equal(a, a_end, b, b_end)) return;
        a = a_end + 1;
        b = b_end + 1;
    }
}

}  // namespace

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

bool file_is_absolute(const char* path) { return is_separator(path[0]) || has_drive(path); }

const char* file_drive(const char* path) {
    static thread_local std::array<char, 3> drive;
    if (!os::has_drive_letters() || !has_drive(path)) return nullptr;
    drive = {path[0], ':', '\0'};
    return drive.data();
}

char* file_first_part(const char* path, char* target) {
    const char* const first = first_separator(path);
    if (!first) return nullptr;
    const auto length = static_cast<std::size_t>(first == path ? 1 : first - path);
    std::memmove(target, path, length);
    target[length] = '\0';
    return target;
}

char* file_first_part(char* path) { return file_first_part(path, path); }

const char* file_last_part(const char* path) {
    const char* const last = last_separator(path);
    return last ? last + 1 : nullptr;
}

char* file_cut_last(char* path) {
    std::string text = path;
    const bool cut = cut_last(text);
    path[text.size()] = '\0';
    return cut ? path : nullptr;
}

const char* file_extension(const char* path) {
    const char* const last = file_last_part(path);
    return std::strrchr(last ? last : path, '.');
}

char* file_backslashes(const char* path, char* target) {
    std::memmove(target, path, std::strlen(path) + 1);
    std::replace(target, target + std::strlen(target), '/', '\\');
    return target;
}

char* file_backslashes(char* path) { return file_backslashes(path, path); }

char* file_join(char* path, const char* relative) {
    std::string joined = path;
    if (!join(joined, relative)) return nullptr;
    std::memcpy(path, joined.c_str(), joined.size() + 1);
    return path;
}

char* file_relative_path(const char* from, const char* to, char* target) {
    static thread_local std::array<char, 260> buffer;
    if (!file_is_absolute(from) || !file_is_absolute(to)) return nullptr;
    skip_common(from, to);
    std::string way;
    for (const char* end = first_separator(from); end; end = first_separator(end + 1)) join(way, "..");
    if (!join(way, to) || (!target && way.size() >= buffer.size())) return nullptr;
    if (!target) target = buffer.data();
    std::memcpy(target, way.c_str(), way.size() + 1);
    return target;
}
