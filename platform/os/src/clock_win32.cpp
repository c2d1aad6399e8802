#include "os/clock.h"
#include "system_clock.h"
#include "windows_api.h"

namespace os {

namespace {

// Reading it costs little enough to serve as the coarse counter, too.
class PerformanceCounter final : public MonotonicClock {
public:
    std::int64_t counter() override {
        LARGE_INTEGER now{};
        QueryPerformanceCounter(&now);
        return now.QuadPart;
    }
    std::int64_t frequency() override {
        LARGE_INTEGER counts{};
        QueryPerformanceFrequency(&counts);
        return counts.QuadPart;
    }
};

}  // namespace

MonotonicClock& system_clock() {
    static PerformanceCounter clock;
    return clock;
}

}  // namespace os
