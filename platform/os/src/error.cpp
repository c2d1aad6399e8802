#include "os/error.h"

#include <cerrno>
#include <system_error>

namespace os {

std::string errno_text() { return std::generic_category().message(errno); }

}  // namespace os
