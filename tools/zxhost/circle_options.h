// The circle of the verbs that travel or scan one.
#pragma once

#include <string>
#include <vector>

#include "mmachaxistargets.h"

namespace CLI {
class App;
}

namespace zxhost {

struct CircleOptions {
    std::vector<double> centre;  // x, y and perhaps z
    double radius = 0.0;         // mm
    double start = 0.0;          // degrees from x towards y
    double sweep = 360.0;        // degrees, negative for clockwise
    double speed = 0.0;          // mm/s; 0 for the machine's own
    std::vector<std::string> targets;
};

// The options live on in `circle`, which must outlive the parsing.
void add_circle_options(CLI::App& verb, CircleOptions& circle);

// The record that the machine takes. `height` is the z of the centre where none was given. Throws HostError
// (wrong usage).
MMachCircle circle_record(const CircleOptions& circle, double height);

// Where on the circle the motion begins.
double start_x(const MMachCircle& circle);
double start_y(const MMachCircle& circle);

}  // namespace zxhost
