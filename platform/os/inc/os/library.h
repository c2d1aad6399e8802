// Loading of shared libraries at run time.
#pragma once

#include <string>

namespace os {

// One loaded library, or none. Moving hands it over; the destructor unloads it.
class SharedLibrary {
public:
    SharedLibrary() = default;
    ~SharedLibrary() { unload(); }
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;

    // Unloads what is loaded, and loads this file. A name without a directory is looked for where the system
    // looks. On failure nothing is loaded and error_text() tells the reason.
    bool load(const std::string& path);

    bool is_loaded() const { return m_handle != nullptr; }

    // The address of an exported name; null, with error_text(), if there is none. It is good until the
    // library is unloaded.
    void* symbol(const char* name);

    // The same as a pointer to a function.
    template <class Function>
    Function* function(const char* name) {
        return reinterpret_cast<Function*>(symbol(name));
    }

    // False, with error_text(), if the system refuses; the library then counts as unloaded all the same.
    bool unload();

    // The system's words for the last failure of this object.
    const std::string& error_text() const { return m_error_text; }

private:
    void* m_handle = nullptr;
    std::string m_error_text;
};

// The directory of the program or shared library that this very function was linked into, with a separator at
// its end; empty if the system doesn't tell.
std::string code_directory();

}  // namespace os
