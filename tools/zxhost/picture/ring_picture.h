// A ring's deviation from round as an SVG picture: the fitted circle, the deviation enlarged about it.
#pragma once

#include <array>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ring_fit.h"

namespace zxhost {

struct RingPicture {
    std::string title;
    std::string subtitle;            // machine and time
    std::vector<PlanePoint> points;  // mm, in the order of measuring
    RingFit fit;
    std::function<double(double)> known_deviation;  // angle in radians to mm; may be empty
    std::array<std::string, 2> axes{"x [mm]", "y [mm]"};
    std::vector<std::pair<std::string, std::string>> numbers;  // name and value, shown beside the ring
};

// How many times larger than the ring itself its deviations are drawn.
double ring_magnification(const RingFit& fit);

void write_ring_picture(std::ostream& out, const RingPicture& picture);

}  // namespace zxhost
