#include "deviations.h"

#include <algorithm>
#include <cmath>

namespace zxhost {

DeviationSummary summary_of(const std::vector<double>& deviations) {
    if (deviations.empty()) return {};
    const auto [low, high] = std::minmax_element(deviations.begin(), deviations.end());
    double squares = 0.0;
    for (const double deviation : deviations) squares += deviation * deviation;
    return {*low, *high, *high - *low, std::sqrt(squares / static_cast<double>(deviations.size()))};
}

}  // namespace zxhost
