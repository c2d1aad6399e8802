#include "ring_fit.h"

#include "deviations.h"
#include "round_fit.h"

namespace zxhost {

std::optional<RingFit> fit_ring(const std::vector<PlanePoint>& points) {
    std::vector<Point<2>> plain;
    plain.reserve(points.size());
    for (const PlanePoint& point : points) plain.push_back({point.x, point.y});
    try {
        const RoundFit<2> fit = fit_round(plain);
        const DeviationSummary summary = summary_of(fit.deviations);
        return RingFit{
            {fit.centre[0], fit.centre[1]}, fit.radius, fit.deviations, summary.peak_to_valley, summary.rms};
    } catch (const NoFit&) {
        return std::nullopt;
    }
}

}  // namespace zxhost
