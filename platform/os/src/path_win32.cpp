#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "os/path.h"
#include "windows_api.h"

namespace os {

namespace {

constexpr std::string_view verbatim = "\\\\?\\";

// Of this length a path serves no longer as one of a directory, in which short names need room, too.
constexpr std::size_t too_long = MAX_PATH - 12;

std::string upper(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

// With any extension, too, these names mean devices.
bool names_device(const std::string& name) {
    const std::string start = upper(std::string_view(name).substr(0, name.find('.')));
    if (start == "CON" || start == "PRN" || start == "AUX" || start == "NUL") return true;
    return start.size() == 4 && (start.starts_with("COM") || start.starts_with("LPT")) && start[3] >= '1' &&
           start[3] <= '9';
}

// The system takes points and blanks off the end of a name.
bool has_another_meaning(const std::string& name) {
    if (name == "." || name == "..") return false;
    return name.ends_with('.') || name.ends_with(' ') || names_device(name);
}

}  // namespace

bool is_verbatim(const std::string& path) { return path.starts_with(verbatim); }

char native_separator() { return '\\'; }

std::string entry_path(const std::string& directory, const std::string& name) {
    const std::string together = directory + name;
    if (is_verbatim(directory)) return together;
    if (together.size() < too_long && !has_another_meaning(name)) return together;
    std::string full;
    // The name of a share has no verbatim form that is as short.
    if (!full_path(directory, full) || full.starts_with("\\\\")) return together;
    if (!full.ends_with('\\')) full += '\\';
    return std::string(verbatim) + full + name;
}

std::string native_path(const std::string& path) {
    std::string native = path;
    if (!is_verbatim(path)) std::replace(native.begin(), native.end(), '/', '\\');
    return native;
}

bool has_drive_letters() { return true; }

bool full_path(const std::string& path, std::string& full) {
    struct Free {
        void operator()(char* block) const { std::free(block); }
    };
    const std::unique_ptr<char, Free> found(_fullpath(nullptr, path.c_str(), 0));
    if (found) full = found.get();
    return found != nullptr;
}

}  // namespace os
