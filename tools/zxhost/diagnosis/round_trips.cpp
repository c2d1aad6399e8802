#include "round_trips.h"

#include <algorithm>
#include <cmath>

namespace zxhost {

using serverdll::Clock;

Microseconds percentile(const std::vector<Microseconds>& sorted, double share) {
    const double rank = std::ceil(share * static_cast<double>(sorted.size()));
    const auto index = static_cast<std::size_t>(std::max(rank, 1.0)) - 1;
    return sorted[std::min(index, sorted.size() - 1)];
}

RoundTrips measure_round_trips(LineTalk& talk, std::size_t count, std::chrono::milliseconds at_most) {
    RoundTrips result;
    const Clock::time_point end = Clock::now() + at_most;
    while (result.sorted.size() < count && (result.sorted.empty() || Clock::now() < end)) {
        const Clock::time_point start = Clock::now();
        const Answer answer = talk.ask("ping", at_most);
        if (!answer.is_good()) {
            result.failure = answer.failure.empty() ? answer.error : answer.failure;
            break;
        }
        result.sorted.push_back(Clock::now() - start);
    }
    std::sort(result.sorted.begin(), result.sorted.end());
    return result;
}

}  // namespace zxhost
