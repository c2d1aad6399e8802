#include <algorithm>
#include <sstream>
#include <string_view>

#include "os/directories.h"
#include "os/path.h"

namespace os {

namespace {

constexpr std::string_view verbatim = "\\\\?\\";

// As the last part of a path it would be taken for more names than one, or for a path.
bool has_another_meaning(const std::string& name) { return name.find('\\') != name.npos || name == "*.*"; }

}  // namespace

bool is_verbatim(const std::string& path) { return path.starts_with(verbatim); }

char native_separator() { return '/'; }

std::string entry_path(const std::string& directory, const std::string& name) {
    if (is_verbatim(directory) || !has_another_meaning(name)) return directory + name;
    return std::string(verbatim) + native_path(directory) + name;
}

std::string native_path(const std::string& path) {
    if (is_verbatim(path)) return path.substr(verbatim.size());
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

bool has_drive_letters() { return false; }

bool full_path(const std::string& path, std::string& full) {
    std::string rest = native_path(path);
    if (!rest.starts_with('/')) {
        std::string current;
        if (!current_directory(current)) return false;
        rest = current + '/' + rest;
    }
    full.clear();
    std::istringstream parts(rest);
    for (std::string part; std::getline(parts, part, '/');) {
        if (part.empty() || part == ".") continue;
        if (part == "..") {
            full.erase(std::min(full.rfind('/'), full.size()));
        } else {
            full += '/' + part;
        }
    }
    if (full.empty()) full.push_back('/');
    return true;
}

}  // namespace os
