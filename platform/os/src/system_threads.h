// What a system's part of os/threads.h gives to the part that all systems share.
#pragma once

#include "os/threads.h"

namespace os {

ThreadSystem& system_threads();

}  // namespace os
