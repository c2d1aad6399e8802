#include <dlfcn.h>

#include <utility>

#include "library_fault.h"
#include "os/library.h"
#include "os/path.h"
#include "os/program.h"

namespace os {
namespace {

std::string loader_error() {
    const char* const text = dlerror();
    return text ? text : "unknown error of the loader";
}

// A file that was made for another machine is told better than by the loader.
std::string load_error(const std::string& path) {
    const std::string words = loader_error();
    const std::string fault = library_fault(path, "/proc/self/exe", [](const std::string&) { return ""; });
    return fault.empty() ? words : fault;
}

}  // namespace

bool SharedLibrary::load(const std::string& path) {
    unload();
    // All at once: a missing name shall show here, not in the middle of a run.
    m_handle = dlopen(native_path(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) m_error_text = load_error(path);
    return m_handle != nullptr;
}

void* SharedLibrary::symbol(const char* name) {
    if (!m_handle) {
        m_error_text = "no library is loaded";
        return nullptr;
    }
    void* const found = dlsym(m_handle, name);
    if (!found) m_error_text = loader_error();
    return found;
}

bool SharedLibrary::unload() {
    if (!m_handle) return true;
    const bool ok = dlclose(std::exchange(m_handle, nullptr)) == 0;
    if (!ok) m_error_text = loader_error();
    return ok;
}

std::string code_directory() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&code_directory), &info) == 0 || info.dli_fname == nullptr)
        return {};
    std::string path = info.dli_fname;
    // A program is told as it was called.
    if (path.find('/') == std::string::npos || !full_path(path, path)) return program_directory();
    return path.substr(0, path.rfind('/') + 1);
}

}  // namespace os
