#include "os/localtime.h"

namespace os {

std::tm local_time(std::time_t moment) {
    std::tm time{};
    localtime_s(&time, &moment);
    return time;
}

}  // namespace os
