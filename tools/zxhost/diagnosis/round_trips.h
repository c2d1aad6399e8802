// How long a machine server takes to answer.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "line_talk.h"

namespace zxhost {

using Microseconds = std::chrono::duration<double, std::micro>;

// Of sorted times, the one that this share of them doesn't exceed; there is at least one.
Microseconds percentile(const std::vector<Microseconds>& sorted, double share);

struct RoundTrips {
    std::vector<Microseconds> sorted;
    std::string failure;  // why it ended early
};

// Asks for nothing so many times, one after the other, and no longer than the time given allows.
RoundTrips measure_round_trips(LineTalk& talk, std::size_t count, std::chrono::milliseconds at_most);

}  // namespace zxhost
