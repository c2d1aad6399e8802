#include "circle_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

#include "exit_status.h"
#include "targets.h"

namespace zxhost {

void add_circle_options(CLI::App& verb, CircleOptions& circle) {
    verb.add_option("--centre", circle.centre, "centre in mm: X Y, or X Y Z; without Z where z stands")
        ->expected(2, 3)
        ->delimiter(',')
        ->required();
    verb.add_option("--radius", circle.radius, "radius in mm")->required();
    verb.add_option("--start", circle.start, "start angle in degrees, from x towards y")
        ->capture_default_str();
    verb.add_option("--sweep", circle.sweep, "angle to travel in degrees, negative for clockwise")
        ->capture_default_str();
    verb.add_option("--speed", circle.speed, "speed in mm/s; 0 is the machine's own")->capture_default_str();
    verb.add_option("AXIS=VALUE", circle.targets, "further axes that travel to a target meanwhile");
}

MMachCircle circle_record(const CircleOptions& circle, double height) {
    MMachCircle record;
    const double numbers[7] = {
        circle.centre.at(0), circle.centre.at(1), circle.centre.size() > 2 ? circle.centre[2] : height,
        circle.radius,       circle.start,        circle.sweep,
        circle.speed};
    const bool finite = std::all_of(std::begin(numbers), std::end(numbers),
                                    [](double number) { return std::isfinite(number); });
    if (!finite) throw HostError(ExitStatus::WrongUsage, "the circle's numbers must be finite");
    if (circle.radius <= 0.0)
        throw HostError(ExitStatus::WrongUsage, "the circle's radius must be above zero",
                        "give --radius in mm");
    std::copy(std::begin(numbers), std::end(numbers), std::begin(record.parameters));
    record.axes = parse_targets(circle.targets, TargetForms::Relative);
    return record;
}

namespace {

double start_angle(const MMachCircle& circle) { return circle.parameters[4] * std::numbers::pi / 180.0; }

}  // namespace

double start_x(const MMachCircle& circle) {
    return circle.parameters[0] + circle.parameters[3] * std::cos(start_angle(circle));
}

double start_y(const MMachCircle& circle) {
    return circle.parameters[1] + circle.parameters[3] * std::sin(start_angle(circle));
}

}  // namespace zxhost
