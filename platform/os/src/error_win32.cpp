#include <array>

#include "os/error.h"
#include "windows_api.h"

namespace os {

int last_error() { return static_cast<int>(GetLastError()); }
void set_last_error(int error) { SetLastError(static_cast<DWORD>(error)); }

std::string error_text(int error) {
    std::array<char, 512> buffer;
    // In one line, whatever its text has.
    constexpr DWORD flags =
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    const DWORD length = FormatMessageA(flags, nullptr, static_cast<DWORD>(error), 0, buffer.data(),
                                        static_cast<DWORD>(buffer.size()), nullptr);
    std::string text(buffer.data(), length);
    text.erase(text.find_last_not_of(" .\r\n") + 1);
    return text.empty() ? "Unknown error " + std::to_string(error) : text;
}

}  // namespace os
