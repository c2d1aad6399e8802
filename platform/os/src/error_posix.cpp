#include <cerrno>
#include <system_error>

#include "os/error.h"

namespace os {

int last_error() { return errno; }
void set_last_error(int error) { errno = error; }
std::string error_text(int error) { return std::generic_category().message(error); }

}  // namespace os
