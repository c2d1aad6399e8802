#include <array>

#include "os/program.h"
#include "windows_api.h"

namespace os {

namespace {

// Only a console has a mode; a pipe, a file or NUL has none.
bool is_console(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}  // namespace

std::string program_directory() {
    std::array<char, 4096> path{};
    const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length == path.size()) return "";
    const std::string program(path.data(), length);
    return program.substr(0, program.rfind('\\') + 1);
}

std::string library_file_name(const std::string& name) { return name + ".dll"; }

bool output_is_terminal() { return is_console(STD_OUTPUT_HANDLE); }

bool error_output_is_terminal() { return is_console(STD_ERROR_HANDLE); }

}  // namespace os
