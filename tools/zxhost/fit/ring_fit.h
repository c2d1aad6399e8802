// The least-squares circle through measured points of a ring, and its deviation from round.
#pragma once

#include <optional>
#include <vector>

namespace zxhost {

struct PlanePoint {
    double x = 0.0;  // mm
    double y = 0.0;
};

struct RingFit {
    PlanePoint centre;
    double radius = 0.0;
    std::vector<double> deviations;  // of each point from the circle, outwards positive
    double peak_to_valley = 0.0;     // the deviation from round
    double rms = 0.0;                // of the deviations
};

// Nothing for fewer than three points, points on one line, or numbers that aren't finite.
std::optional<RingFit> fit_ring(const std::vector<PlanePoint>& points);

}  // namespace zxhost
