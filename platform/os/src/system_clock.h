// What a system's part of os/clock.h gives to the part that all systems share.
#pragma once

#include "os/clock.h"

namespace os {

MonotonicClock& system_clock();

}  // namespace os
