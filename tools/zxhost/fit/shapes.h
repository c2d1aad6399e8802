// The shapes that a person can ask for by name, fitted and told in words and numbers.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "point.h"

namespace zxhost {

struct Quantity {
    std::string name;
    double value = 0.0;
    bool is_length = true;  // else a component of a direction
};

struct FittedShape {
    std::string_view name;             // "circle"
    std::string_view ideal;            // what its deviation is from: "round"
    std::vector<Quantity> quantities;  // the shape's own, then those of the deviations
    std::vector<double> deviations;    // of each point, in their order
    std::vector<double> along;         // for a line, where each point lies along it; else empty
};

struct Shape {
    std::string_view name;
    std::size_t fewest_axes;  // two or three
    std::size_t most_axes;
    FittedShape (*fit)(const std::vector<std::string>& axes, const std::vector<Point<3>>& points);
};

const std::vector<Shape>& shapes();

// Throws HostError: wrong usage for an unknown shape, or axes of another number than it takes or of different
// units; machine error if the points determine no such shape.
FittedShape fit_shape(const std::string& shape, const std::vector<std::string>& axes,
                      const std::vector<std::string>& units, const std::vector<Point<3>>& points);

// The axes that the shape stands on unless others are asked for; throws like fit_shape.
std::vector<std::string> common_axes(const std::string& shape);

}  // namespace zxhost
