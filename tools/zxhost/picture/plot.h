// Measured points over one pair of numbers, as an SVG picture with scales.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ring_fit.h"

namespace zxhost {

struct Plot {
    std::string title;
    std::string subtitle;
    std::string x_label;  // with its unit
    std::string y_label;
    std::vector<PlanePoint> points;  // finite, in the order of measuring; they are joined by a line
    bool same_scale = false;         // a millimetre is as long both ways
    std::vector<std::pair<std::string, std::string>> numbers;  // name and value, shown beside the plot
};

// Very many points are drawn by the extremes of each small group, so that a picture stays small.
void write_plot(std::ostream& out, const Plot& plot);

}  // namespace zxhost
