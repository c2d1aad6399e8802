// How far measured points lie from a shape, and what these distances come to.
#pragma once

#include <vector>

namespace zxhost {

struct DeviationSummary {
    double lowest = 0.0;
    double highest = 0.0;
    double peak_to_valley = 0.0;  // highest less lowest
    double rms = 0.0;             // root mean square
};

// All 0 for no deviations.
DeviationSummary summary_of(const std::vector<double>& deviations);

}  // namespace zxhost
