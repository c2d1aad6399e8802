#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "os/directories.h"
#include "os/environment.h"
#include "os/path.h"

namespace os {

std::string user_state_directory() {
    std::string base;
    if (get_variable("XDG_STATE_HOME", base) && base.starts_with('/')) return base + "/m2zendrix";
    if (get_variable("HOME", base) && !base.empty()) return base + "/.local/state/m2zendrix";
    return {};
}

bool make_directories(const std::string& path) {
    const std::string native = native_path(path);
    for (std::size_t end = native.find('/', 1); end != native.npos; end = native.find('/', end + 1)) {
        mkdir(native.substr(0, end).c_str(), 0777);
    }
    mkdir(native.c_str(), 0777);
    struct stat info {};
    return stat(native.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool current_directory(std::string& path) {
    std::string buffer(256, '\0');
    while (!getcwd(buffer.data(), buffer.size())) {
        if (errno != ERANGE) return false;
        buffer.resize(2 * buffer.size());
    }
    path = buffer.c_str();
    return true;
}

std::string temporary_directory() {
    std::string path;
    if (!get_variable("TMPDIR", path) || path.empty()) path = "/tmp";
    return path.ends_with('/') ? path : path + '/';
}

}  // namespace os
