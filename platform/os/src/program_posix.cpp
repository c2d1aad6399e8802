#include <unistd.h>

#include <array>
#include <cstddef>

#include "os/program.h"

namespace os {

std::string program_directory() {
    std::array<char, 4096> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0 || static_cast<std::size_t>(length) == path.size()) return "";
    const std::string program(path.data(), static_cast<std::size_t>(length));
    return program.substr(0, program.rfind('/') + 1);
}

std::string library_file_name(const std::string& name) { return "lib" + name + ".so"; }

bool output_is_terminal() { return isatty(STDOUT_FILENO) == 1; }

bool error_output_is_terminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace os
