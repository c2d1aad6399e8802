#include <algorithm>
#include <sstream>

#include "os/directories.h"
#include "os/path.h"

namespace os {

std::string native_path(const std::string& path) {
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
