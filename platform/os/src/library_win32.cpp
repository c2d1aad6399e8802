#include <array>
#include <utility>

#include "library_fault.h"
#include "os/environment.h"
#include "os/error.h"
#include "os/library.h"
#include "os/path.h"
#include "windows_api.h"

namespace os {
namespace {

HMODULE native(void* handle) { return static_cast<HMODULE>(handle); }

std::string system_text() { return error_text(last_error()); }

// No window shall open about a library that can't be loaded.
class QuietErrors {
public:
    QuietErrors() { ::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &m_before); }
    ~QuietErrors() { ::SetThreadErrorMode(m_before, nullptr); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

private:
    DWORD m_before = 0;
};

std::string module_path(HMODULE module) {
    std::array<char, 4096> path{};
    const DWORD length = ::GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
    return length < path.size() ? std::string(path.data(), length) : "";
}

// Looks in these folders, or with null where the system looks for a name alone.
std::string find_file(const char* folders, const std::string& name) {
    std::array<char, 4096> path{};
    const DWORD length =
        ::SearchPathA(folders, name.c_str(), ".dll", static_cast<DWORD>(path.size()), path.data(), nullptr);
    return length > 0 && length < path.size() ? std::string(path.data(), length) : "";
}

// Where the system finds what a library needs that was loaded by its path: in memory, or in the system's
// folders, but not beside the program.
std::string find_needed(const std::string& name) {
    if (const HMODULE loaded = ::GetModuleHandleA(name.c_str())) return module_path(loaded);
    std::array<char, MAX_PATH> system{};
    ::GetSystemDirectoryA(system.data(), MAX_PATH);
    std::string others;
    get_variable("PATH", others);
    return find_file((std::string(system.data()) + ";.;" + others).c_str(), name);
}

// The system's own words name neither the library that is missing nor what is wrong with one.
std::string load_error(const std::string& path, const std::string& file) {
    const std::string words = system_text();
    const std::string fault = library_fault(file, module_path(nullptr), find_needed);
    return fault.empty() ? path + ": " + words : fault;
}

}  // namespace

bool SharedLibrary::load(const std::string& path) {
    unload();
    const QuietErrors quiet;
    std::string file;
    if (path.find_first_of("/\\") == path.npos) {
        m_handle = ::LoadLibraryExA(path.c_str(), nullptr, 0);
    } else if (full_path(path, file)) {
        // What it needs may lie beside it.
        m_handle = ::LoadLibraryExA(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    }
    if (!m_handle) m_error_text = load_error(path, file.empty() ? find_file(nullptr, path) : file);
    return m_handle != nullptr;
}

void* SharedLibrary::symbol(const char* name) {
    if (!m_handle) {
        m_error_text = "no library is loaded";
        return nullptr;
    }
    const FARPROC found = ::GetProcAddress(native(m_handle), name);
    if (!found) m_error_text = std::string(name) + ": " + system_text();
    return reinterpret_cast<void*>(found);
}

bool SharedLibrary::unload() {
    if (!m_handle) return true;
    const bool ok = ::FreeLibrary(native(std::exchange(m_handle, nullptr))) != 0;
    if (!ok) m_error_text = system_text();
    return ok;
}

std::string code_directory() {
    constexpr DWORD without_holding =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE module = nullptr;
    if (!::GetModuleHandleExA(without_holding, reinterpret_cast<LPCSTR>(&code_directory), &module)) return {};
    const std::string path = module_path(module);
    return path.substr(0, path.rfind('\\') + 1);
}

}  // namespace os
