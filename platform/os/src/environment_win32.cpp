#include "os/environment.h"
#include "windows_api.h"

namespace os {

bool get_variable(const char* name, std::string& value) {
    std::string found(256, '\0');
    while (true) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length = GetEnvironmentVariableA(name, found.data(), static_cast<DWORD>(found.size()));
        // An empty value has no length either.
        if (length == 0 && GetLastError() != ERROR_SUCCESS) return false;
        const bool fits = length < found.size();
        found.resize(length);
        if (!fits) continue;
        value = found;
        return true;
    }
}

std::size_t expand_variables(const char* text, char* target, std::size_t size) {
    return ExpandEnvironmentStringsA(text, target, static_cast<DWORD>(size));
}

}  // namespace os
