#include "ring_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "number_text.h"
#include "svg.h"

namespace zxhost {
namespace {

// Pixels. The ring stands on the left, the numbers on the right.
constexpr double picture_width = 1120.0;
constexpr double picture_height = 800.0;
constexpr double middle_x = 390.0;
constexpr double middle_y = 430.0;
constexpr double ring_radius = 215.0;  // of the fitted circle
constexpr double deviation_room = 75.0;
constexpr double dial_radius = 312.0;  // where the angles stand
constexpr double panel_x = 780.0;

using svg::curve;
using svg::faint;
using svg::grid;
using svg::halo;
using svg::ink;
using svg::known;
using Point = SvgPoint;

class Drawing {
public:
    Drawing(std::ostream& out, const RingPicture& picture)
        : m_svg(out, picture_width, picture_height, picture.title),
          m_picture(picture),
          m_ring_scale(ring_radius / picture.fit.radius),
          m_deviation_scale(m_ring_scale * ring_magnification(picture.fit)) {}

    void write() {
        title();
        rings();
        axes();
        measured_form();
        if (m_picture.known_deviation) known_form();
        ring_labels();
        extremes();
        centre();
        scales();
        numbers();
        legend();
    }

private:
    Point at(double angle, double radius) const {
        return {middle_x + radius * std::cos(angle), middle_y - radius * std::sin(angle)};
    }
    double drawn_radius(double deviation) const { return ring_radius + deviation * m_deviation_scale; }
    double angle_of(std::size_t i) const {
        const PlanePoint& p = m_picture.points[i];
        return std::atan2(p.y - m_picture.fit.centre.y, p.x - m_picture.fit.centre.x);
    }

    void line(Point a, Point b, std::string_view colour, double width, std::string_view more = "") {
        m_svg.line(a, b, colour, width, more);
    }
    void circle(double radius, std::string_view colour, double width, std::string_view more = "") {
        m_svg.circle({middle_x, middle_y}, radius, colour, width, more);
    }
    void text(Point p, std::string_view anchor, double size, std::string_view colour, const std::string& what,
              std::string_view more = "") {
        m_svg.text(p, anchor, size, colour, what, more);
    }

    void title() {
        text({40, 46}, "start", 22, ink, m_picture.title, " font-weight=\"bold\"");
        text({40, 72}, "start", 13, faint, m_picture.subtitle);
    }

    // Circles of equal deviation, as far as the largest one goes.
    int rings_a_side() const {
        return static_cast<int>(std::floor(deviation_room * 1.05 / (grid_step() * m_deviation_scale)));
    }

    void rings() {
        for (int i = -rings_a_side(); i <= rings_a_side(); ++i)
            if (i != 0) circle(drawn_radius(i * grid_step()), grid, 1);
        circle(ring_radius, ink, 1.3);
        const auto& deviations = m_picture.fit.deviations;
        const auto [low, high] = std::minmax_element(deviations.begin(), deviations.end());
        circle(drawn_radius(*low), curve, 1, " stroke-dasharray=\"3 4\"");
        circle(drawn_radius(*high), curve, 1, " stroke-dasharray=\"3 4\"");
    }

    void ring_labels() {
        const double label_angle = std::numbers::pi / 4.0;
        for (int i = -rings_a_side(); i <= rings_a_side(); ++i) ring_label(label_angle, i * grid_step());
    }

    void ring_label(double angle, double deviation) {
        const Point p = at(angle, drawn_radius(deviation));
        const std::string what =
            deviation == 0.0 ? "0" : fmt::format("{:+g} µm", rounded(deviation * 1000.0));
        text({p.x, p.y + 3.5}, "middle", 10, faint, what,
             " stroke=\"#ffffff\" stroke-width=\"4\" paint-order=\"stroke\"");
    }

    static double rounded(double micrometres) { return std::round(micrometres * 1e6) / 1e6; }

    double grid_step() const { return round_down(deviation_room / m_deviation_scale / 2.0); }

    void axes() {
        for (int degrees = 0; degrees < 360; degrees += 30) {
            const double angle = degrees * std::numbers::pi / 180.0;
            line(at(angle, dial_radius - 14), at(angle, dial_radius - 6), faint, 1);
            if (degrees % 90 == 0) continue;
            const Point p = at(angle, dial_radius + 8);
            text({p.x, p.y + 4}, "middle", 11, faint, fmt::format("{}°", degrees));
        }
        arrow(0.0, m_picture.axes[0]);
        arrow(std::numbers::pi / 2.0, m_picture.axes[1]);
    }

    void arrow(double angle, const std::string& name) {
        const double tip = dial_radius + 4;
        line(at(angle + std::numbers::pi, tip), at(angle, tip), "#a4aeb9", 1);
        const Point a = at(angle, tip + 8), b = at(angle + 0.016, tip - 4), c = at(angle - 0.016, tip - 4);
        m_svg.path(path_to(a, true) + path_to(b, false) + path_to(c, false) + "Z", " fill=\"#a4aeb9\"");
        const bool along_x = angle == 0.0;
        text({a.x + (along_x ? 4.0 : 10.0), a.y + (along_x ? 4.0 : 6.0)}, "start", 12, ink, name);
    }

    void known_form() {
        std::string path;
        for (int i = 0; i <= 720; ++i) {
            const double angle = i * std::numbers::pi / 360.0;
            path += path_to(at(angle, drawn_radius(m_picture.known_deviation(angle))), i == 0);
        }
        m_svg.path(path + "Z", fmt::format(" fill=\"none\" stroke=\"{}\" stroke-width=\"1.6\"", known));
    }

    // No two neighbours further apart than a few degrees: the ring was measured all round.
    bool is_closed() const {
        std::vector<double> angles;
        for (std::size_t i = 0; i < m_picture.points.size(); ++i) angles.push_back(angle_of(i));
        std::sort(angles.begin(), angles.end());
        double gap = angles.front() + 2.0 * std::numbers::pi - angles.back();
        for (std::size_t i = 1; i < angles.size(); ++i) gap = std::max(gap, angles[i] - angles[i - 1]);
        return gap < std::numbers::pi / 18.0;
    }

    // Of very many points, the lowest and highest of each small group.
    std::vector<std::size_t> drawn_points() const {
        const auto& deviations = m_picture.fit.deviations;
        const std::size_t group = deviations.size() / 5000 + 1;
        std::vector<std::size_t> drawn;
        for (std::size_t start = 0; start < deviations.size(); start += group) {
            const auto first = deviations.begin() + static_cast<std::ptrdiff_t>(start);
            const auto last =
                deviations.begin() + static_cast<std::ptrdiff_t>(std::min(start + group, deviations.size()));
            const auto [low, high] = std::minmax_element(first, last);
            drawn.push_back(static_cast<std::size_t>(std::min(low, high) - deviations.begin()));
            if (low != high)
                drawn.push_back(static_cast<std::size_t>(std::max(low, high) - deviations.begin()));
        }
        return drawn;
    }

    void measured_form() {
        std::string path;
        for (const std::size_t i : drawn_points())
            path += path_to(at(angle_of(i), drawn_radius(m_picture.fit.deviations[i])), path.empty());
        if (is_closed()) {
            path += "Z";
            const std::string ring =
                fmt::format("M{0} {1}a{2} {2} 0 1 0 {3} 0a{2} {2} 0 1 0 {4} 0Z", middle_x - ring_radius,
                            middle_y, ring_radius, 2 * ring_radius, -2 * ring_radius);
            m_svg.path(path + ring,
                       fmt::format(" fill-rule=\"evenodd\" fill=\"{}\" fill-opacity=\"0.14\"", curve));
        }
        m_svg.path(path, fmt::format(" fill=\"none\" stroke=\"{}\" stroke-width=\"1.1\" "
                                     "stroke-linejoin=\"round\"",
                                     curve));
    }

    void extremes() {
        const auto& deviations = m_picture.fit.deviations;
        const auto [low, high] = std::minmax_element(deviations.begin(), deviations.end());
        extreme(static_cast<std::size_t>(low - deviations.begin()), -1.0);
        extreme(static_cast<std::size_t>(high - deviations.begin()), 1.0);
    }

    // The text stands outside (side 1) or inside (side -1) of the point.
    void extreme(std::size_t i, double side) {
        const double deviation = m_picture.fit.deviations[i];
        const double angle = angle_of(i);
        const Point p = at(angle, drawn_radius(deviation));
        const double distance = side * (18.0 + 24.0 * std::abs(std::cos(angle)));
        const Point label = at(angle, drawn_radius(deviation) + distance);
        m_svg.disc(p, 3.6, curve);
        text({label.x, label.y + 4}, "middle", 12, curve, fmt::format("{:+.2f} µm", deviation * 1000.0),
             " font-weight=\"bold\" stroke=\"#ffffff\" stroke-width=\"5\" paint-order=\"stroke\"");
    }

    void centre() {
        line({middle_x - 9, middle_y}, {middle_x + 9, middle_y}, ink, 1.6);
        line({middle_x, middle_y - 9}, {middle_x, middle_y + 9}, ink, 1.6);
        circle(4, ink, 1.2);
        const PlanePoint& at_centre = m_picture.fit.centre;
        text({middle_x, middle_y + 30}, "middle", 12, ink, centre_text(0, at_centre.x), halo);
        text({middle_x, middle_y + 47}, "middle", 12, ink, centre_text(1, at_centre.y), halo);
    }

    std::string centre_text(std::size_t axis, double value) const {
        const std::string& label = m_picture.axes[axis];
        return label.substr(0, label.find(" [")) + " " + fixed_text(value, 4) + " mm";
    }

    // A bar for the size of the ring and one for the deviations.
    void scales() {
        const double ring_bar = round_down(110.0 / m_ring_scale);
        const double deviation_bar = round_down(110.0 / m_deviation_scale);
        scale({40, 762}, ring_bar * m_ring_scale, "ring: " + shortest_text(rounded(ring_bar)) + " mm", ink);
        scale({240, 762}, deviation_bar * m_deviation_scale,
              "deviation: " + shortest_text(rounded(deviation_bar * 1000.0)) + " µm", curve);
        text({440, 766}, "start", 13, ink,
             fmt::format("deviation enlarged {:g} times", ring_magnification(m_picture.fit)),
             " font-weight=\"bold\"");
    }

    void scale(Point start, double length, const std::string& what, std::string_view colour) {
        const Point end{start.x + length, start.y};
        line(start, end, colour, 2);
        line({start.x, start.y - 5}, {start.x, start.y + 5}, colour, 2);
        line({end.x, end.y - 5}, {end.x, end.y + 5}, colour, 2);
        text({start.x, start.y + 21}, "start", 12, colour, what);
    }

    void numbers() {
        double y = 150;
        for (const auto& [name, value] : m_picture.numbers) {
            text({panel_x, y}, "start", 12, faint, name);
            text({picture_width - 40, y}, "end", 13, ink, value);
            line({panel_x, y + 9}, {picture_width - 40, y + 9}, "#edf0f3", 1);
            y += 30;
        }
    }

    void legend() {
        double y = picture_height - 122;
        const auto entry = [&](std::string_view colour, double width, std::string_view dashes,
                               const char* name) {
            line({panel_x, y}, {panel_x + 34, y}, colour, width, dashes);
            text({panel_x + 46, y + 4}, "start", 12, ink, name);
            y += 24;
        };
        entry(curve, 1.1, "", "measured");
        if (m_picture.known_deviation) entry(known, 1.6, "", "known form of the part");
        entry(ink, 1.3, "", "least-squares circle");
        entry(curve, 1, " stroke-dasharray=\"3 4\"", "highest and lowest point");
    }

    SvgWriter m_svg;
    const RingPicture& m_picture;
    const double m_ring_scale;       // pixels per mm of the ring
    const double m_deviation_scale;  // pixels per mm of deviation
};

}  // namespace

double ring_magnification(const RingFit& fit) {
    double largest = 1e-9;
    for (const double deviation : fit.deviations) largest = std::max(largest, std::abs(deviation));
    return std::max(1.0, round_down(deviation_room / largest / (ring_radius / fit.radius)));
}

void write_ring_picture(std::ostream& out, const RingPicture& picture) { Drawing(out, picture).write(); }

}  // namespace zxhost
