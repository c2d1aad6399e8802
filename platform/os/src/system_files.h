// What a system's part of os/file.h gives to the part that all systems share.
#pragma once

#include "os/file.h"

namespace os {

FileSystem& system_files();

}  // namespace os
