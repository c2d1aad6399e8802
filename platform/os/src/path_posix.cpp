#include <algorithm>

#include "os/path.h"

namespace os {

std::string native_path(const std::string& path) {
    std::string native = path;
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

}  // namespace os
