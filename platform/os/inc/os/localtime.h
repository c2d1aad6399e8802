// The calendar at the place where the program runs.
#pragma once

#include <ctime>

namespace os {

// A moment in local time.
std::tm local_time(std::time_t moment);

}  // namespace os
