#include "shapes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "deviations.h"
#include "exit_status.h"
#include "flat_fit.h"
#include "round_fit.h"

namespace zxhost {
namespace {

using Axes = std::vector<std::string>;
using Space = std::vector<Point<3>>;

std::vector<Point<2>> in_plane(const Space& points) {
    std::vector<Point<2>> result;
    result.reserve(points.size());
    for (const Point<3>& point : points) result.push_back({point[0], point[1]});
    return result;
}

template <std::size_t N>
void add_numbers(FittedShape& shape, const char* what, const Axes& axes, const Point<N>& numbers,
                 bool are_lengths) {
    for (std::size_t i = 0; i < N; ++i)
        shape.quantities.push_back({std::string(what) + " " + axes[i], numbers[i], are_lengths});
}

void add_deviations(FittedShape& shape, std::vector<double> deviations) {
    const DeviationSummary summary = summary_of(deviations);
    shape.quantities.push_back({"deviation from " + std::string(shape.ideal), summary.peak_to_valley});
    shape.quantities.push_back({"rms deviation", summary.rms});
    shape.quantities.push_back({"lowest deviation", summary.lowest});
    shape.quantities.push_back({"highest deviation", summary.highest});
    shape.deviations = std::move(deviations);
}

template <std::size_t N>
FittedShape round_shape(std::string_view name, const Axes& axes, const std::vector<Point<N>>& points) {
    RoundFit<N> fit = fit_round(points);
    FittedShape shape{name, "round", {}, {}, {}};
    add_numbers(shape, "centre", axes, fit.centre, true);
    shape.quantities.push_back({"radius", fit.radius});
    shape.quantities.push_back({"radius, standard deviation", fit.radius_deviation});
    add_deviations(shape, std::move(fit.deviations));
    return shape;
}

template <std::size_t N>
FittedShape straight_shape(const Axes& axes, const std::vector<Point<N>>& points) {
    LineFit<N> fit = fit_line(points);
    FittedShape shape{"line", "straight", {}, {}, std::move(fit.along)};
    add_numbers(shape, "point", axes, fit.point, true);
    add_numbers(shape, "direction", axes, fit.direction, false);
    add_deviations(shape, std::move(fit.deviations));
    // In space they are distances, all to one side: what counts is the cylinder that holds all points.
    if (N == 3) {
        auto& quantities = shape.quantities;
        const double farthest = quantities.back().value;
        (quantities.end() - 4)->value = 2.0 * farthest;
        quantities.erase(quantities.end() - 2);
    }
    return shape;
}

FittedShape line(const Axes& axes, const Space& points) {
    return axes.size() == 2 ? straight_shape(axes, in_plane(points)) : straight_shape(axes, points);
}

FittedShape circle(const Axes& axes, const Space& points) {
    return round_shape("circle", axes, in_plane(points));
}

FittedShape plane(const Axes& axes, const Space& points) {
    PlaneFit fit = fit_plane(points);
    FittedShape shape{"plane", "flat", {}, {}, {}};
    add_numbers(shape, "point", axes, fit.point, true);
    add_numbers(shape, "normal", axes, fit.normal, false);
    add_deviations(shape, std::move(fit.deviations));
    return shape;
}

FittedShape sphere(const Axes& axes, const Space& points) { return round_shape("sphere", axes, points); }

const Shape& shape_of(const std::string& name) {
    const auto found = std::find_if(shapes().begin(), shapes().end(),
                                    [&](const Shape& shape) { return shape.name == name; });
    if (found == shapes().end())
        throw HostError(ExitStatus::WrongUsage, "there is no shape '" + name + "'",
                        "take one of: line, circle, plane, sphere");
    return *found;
}

}  // namespace

const std::vector<Shape>& shapes() {
    static const std::vector<Shape> all{
        {"line", 2, 3, line}, {"circle", 2, 2, circle}, {"plane", 3, 3, plane}, {"sphere", 3, 3, sphere}};
    return all;
}

std::vector<std::string> common_axes(const std::string& shape) {
    return shape_of(shape).fewest_axes == 2 ? Axes{"x", "y"} : Axes{"x", "y", "z"};
}

FittedShape fit_shape(const std::string& name, const Axes& axes, const std::vector<std::string>& units,
                      const Space& points) {
    const Shape& shape = shape_of(name);
    if (axes.size() < shape.fewest_axes || axes.size() > shape.most_axes)
        throw HostError(
            ExitStatus::WrongUsage, fmt::format("a {} takes no {} axes", name, axes.size()),
            shape.most_axes == 2 ? "name two, as in --axes x,y" : "name three, as in --axes x,y,z");
    for (std::size_t i = 1; i < units.size(); ++i)
        if (units[i] != units[0])
            throw HostError(ExitStatus::WrongUsage,
                            fmt::format("{} [{}] and {} [{}] have different units: no {} lies in them",
                                        axes[0], units[0], axes[i], units[i], name),
                            "name axes of one unit with --axes");
    try {
        return shape.fit(axes, points);
    } catch (const NoFit& why) {
        throw HostError(ExitStatus::MachineError,
                        fmt::format("no {} goes through the {} points: {}", name, points.size(), why.what()),
                        "scan more of the part, or fit another shape");
    }
}

}  // namespace zxhost
