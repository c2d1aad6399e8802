#include <direct.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "os/directories.h"
#include "os/environment.h"
#include "os/path.h"
#include "windows_api.h"

namespace os {

std::string user_state_directory() {
    std::string base;
    return get_variable("LOCALAPPDATA", base) && !base.empty() ? base + "\\m2zendrix" : "";
}

bool make_directories(const std::string& path) {
    const std::string native = native_path(path);
    for (std::size_t end = native.find('\\', 1); end != native.npos; end = native.find('\\', end + 1)) {
        _mkdir(native.substr(0, end).c_str());
    }
    _mkdir(native.c_str());
    const DWORD attributes = GetFileAttributesA(native.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool current_directory(std::string& path) {
    struct Free {
        void operator()(char* block) const { std::free(block); }
    };
    // With a length of 0 the block is as long as it takes.
    const std::unique_ptr<char, Free> current(_getcwd(nullptr, 0));
    if (current) path = current.get();
    return current != nullptr;
}

std::string temporary_directory() {
    std::array<char, MAX_PATH + 1> path{};
    const DWORD length = GetTempPathA(static_cast<DWORD>(path.size()), path.data());
    return {path.data(), length < path.size() ? length : 0};
}

}  // namespace os
