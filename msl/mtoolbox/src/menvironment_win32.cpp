#include <array>
#include <cstdlib>
#include <memory>

#include "errtrace.h"
#include "menvironment.h"
#include "os/environment.h"
#include "os/error.h"

namespace {

constexpr const char* source = "msl/mtoolbox/src/menvironment_win32";

struct Free {
    void operator()(void* block) const { std::free(block); }
};

// For a text that the buffer on the stack could not take.
bool replace_long(std::string& s, MExpandFunction expand, std::size_t needed) {
    const std::unique_ptr<char, Free> block(static_cast<char*>(std::malloc(needed + 2)));
    if (!block) {
        MERRTRACE_REPORT(source, "MReplaceEnvironmentVars(): malloc() failed: %s", os::errno_text().c_str());
        return false;
    }
    // The environment may have changed since it was measured.
    const std::size_t size = expand(s.c_str(), block.get(), needed);
    if (size == 0 || size > needed) {
        MERRTRACE_REPORT(source, "MReplaceEnvironmentVars(): ExpandEnvironmentStrings() failed again: %s",
                         os::error_text(os::last_error()).c_str());
        return false;
    }
    s = block.get();
    return true;
}

}  // namespace

bool MReplaceEnvironmentVars(std::string& s, MExpandFunction expand) {
    std::array<char, 4094> buffer;
    const std::size_t size = expand(s.c_str(), buffer.data(), buffer.size());
    if (size > buffer.size()) return replace_long(s, expand, size);
    if (size == 0) {
        MERRTRACE_REPORT(source, "MReplaceEnvironmentVars(): ExpandEnvironmentStrings() failed: %s",
                         os::error_text(os::last_error()).c_str());
        return false;
    }
    s = buffer.data();
    return true;
}

bool MReplaceEnvironmentVars(std::string& s) { return MReplaceEnvironmentVars(s, os::expand_variables); }
