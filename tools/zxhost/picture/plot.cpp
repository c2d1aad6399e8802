#include "plot.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "svg.h"

namespace zxhost {
namespace {

using namespace svg;

// Pixels.
constexpr double picture_width = 1120.0;
constexpr double picture_height = 800.0;
constexpr double left = 100.0;
constexpr double top = 120.0;
constexpr double bottom = 730.0;
constexpr double right_alone = 1080.0;  // of the plot without numbers beside it
constexpr double right_beside = 740.0;
constexpr double panel_x = 780.0;

// One direction of the plot: from numbers to pixels.
struct Scale {
    double middle = 0.0;  // of the numbers
    double range = 0.0;   // that the pixels show
    double from = 0.0;    // pixel of the lowest number
    double to = 0.0;

    double low() const { return middle - range / 2.0; }
    double pixel(double number) const { return from + (number - low()) / range * (to - from); }
};

Scale scale_of(const std::vector<PlanePoint>& points, double PlanePoint::*number, double from, double to) {
    const auto [low, high] =
        std::minmax_element(points.begin(), points.end(),
                            [=](const PlanePoint& a, const PlanePoint& b) { return a.*number < b.*number; });
    if (low == points.end()) return {0.0, 1.0, from, to};
    const double middle = (*low).*number / 2.0 + (*high).*number / 2.0;
    const double range = (*high).*number - (*low).*number;
    // No scale is finer than what numbers of this size can tell.
    return {middle, std::max({range * 1.08, std::abs(middle) * 1e-12, 1e-9}), from, to};
}

// The coarser of the two becomes that of both.
void make_same(Scale& x, Scale& y) {
    const double a_pixel = std::max(x.range / std::abs(x.to - x.from), y.range / std::abs(y.to - y.from));
    x.range = a_pixel * std::abs(x.to - x.from);
    y.range = a_pixel * std::abs(y.to - y.from);
}

double tick_step(const Scale& scale) {
    const double rough = scale.range / 6.0;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    for (const double step : {1.0, 2.0, 5.0})
        if (step * power >= rough) return step * power;
    return 10.0 * power;
}

std::vector<double> ticks(const Scale& scale) {
    const double step = tick_step(scale);
    std::vector<double> all;
    for (double i = std::ceil(scale.low() / step); i * step <= scale.low() + scale.range; i += 1.0) {
        all.push_back(i * step);
        if (all.size() > 20) break;  // numbers so large that one more changes nothing
    }
    return all;
}

std::string tick_text(double number, double step) {
    const double largest = std::abs(number);
    if (largest >= 1e9 || step < 1e-6) return fmt::format("{:.10g}", number);
    const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
    return fmt::format("{:.{}f}", largest < step / 2.0 ? 0.0 : number, decimals);
}

// Of each small group the points that reach furthest to each of four sides, in their order.
std::vector<PlanePoint> thinned(const std::vector<PlanePoint>& points) {
    const std::size_t group = points.size() / 2500 + 1;
    if (group == 1) return points;
    const auto by_x = [](const PlanePoint& a, const PlanePoint& b) { return a.x < b.x; };
    const auto by_y = [](const PlanePoint& a, const PlanePoint& b) { return a.y < b.y; };
    std::vector<PlanePoint> drawn;
    for (std::size_t start = 0; start < points.size(); start += group) {
        const auto first = points.begin() + static_cast<std::ptrdiff_t>(start);
        const auto last =
            points.begin() + static_cast<std::ptrdiff_t>(std::min(start + group, points.size()));
        const auto x = std::minmax_element(first, last, by_x);
        const auto y = std::minmax_element(first, last, by_y);
        std::array chosen{x.first, x.second, y.first, y.second};
        std::sort(chosen.begin(), chosen.end());
        std::for_each(chosen.begin(), std::unique(chosen.begin(), chosen.end()),
                      [&](auto point) { drawn.push_back(*point); });
    }
    return drawn;
}

class Drawing {
public:
    Drawing(std::ostream& out, const Plot& plot)
        : m_svg(out, picture_width, picture_height, plot.title),
          m_plot(plot),
          m_right(plot.numbers.empty() ? right_alone : right_beside),
          m_x(scale_of(plot.points, &PlanePoint::x, left, m_right)),
          m_y(scale_of(plot.points, &PlanePoint::y, bottom, top)) {
        if (plot.same_scale) make_same(m_x, m_y);
    }

    void write() {
        m_svg.text({40, 46}, "start", 22, ink, m_plot.title, " font-weight=\"bold\"");
        m_svg.text({40, 72}, "start", 13, faint, m_plot.subtitle);
        x_ticks();
        y_ticks();
        frame();
        points();
        numbers();
    }

private:
    SvgPoint at(const PlanePoint& p) const { return {m_x.pixel(p.x), m_y.pixel(p.y)}; }

    void x_ticks() {
        for (const double number : ticks(m_x)) {
            const double x = m_x.pixel(number);
            m_svg.line({x, top}, {x, bottom}, grid, 1);
            m_svg.text({x, bottom + 20}, "middle", 12, faint, tick_text(number, tick_step(m_x)));
        }
        m_svg.text({m_right, bottom + 44}, "end", 14, ink, m_plot.x_label);
    }

    void y_ticks() {
        for (const double number : ticks(m_y)) {
            const double y = m_y.pixel(number);
            m_svg.line({left, y}, {m_right, y}, grid, 1);
            m_svg.text({left - 8, y + 4}, "end", 12, faint, tick_text(number, tick_step(m_y)));
        }
        m_svg.text({left, top - 10}, "start", 14, ink, m_plot.y_label);
    }

    void frame() {
        m_svg.path(path_to({left, top}, true) + path_to({m_right, top}, false) +
                       path_to({m_right, bottom}, false) + path_to({left, bottom}, false) + "Z",
                   fmt::format(" fill=\"none\" stroke=\"{}\"", faint));
    }

    void points() {
        std::string path;
        for (const PlanePoint& point : thinned(m_plot.points)) path += path_to(at(point), path.empty());
        if (path.empty()) return;
        m_svg.path(path, fmt::format(" fill=\"none\" stroke=\"{}\" stroke-width=\"1.1\" "
                                     "stroke-linejoin=\"round\"",
                                     curve));
        m_svg.disc(at(m_plot.points.front()), 4.5, known);
        m_svg.circle(at(m_plot.points.back()), 6.5, ink, 1.5);
        m_svg.disc({left + 8, bottom + 39}, 4.5, known);
        m_svg.text({left + 20, bottom + 44}, "start", 12, faint, "first point");
        m_svg.circle({left + 120, bottom + 39}, 5.5, ink, 1.5);
        m_svg.text({left + 132, bottom + 44}, "start", 12, faint, "last point");
    }

    void numbers() {
        double y = 150;
        for (const auto& [name, value] : m_plot.numbers) {
            m_svg.text({panel_x, y}, "start", 12, faint, name);
            m_svg.text({picture_width - 40, y}, "end", 13, ink, value);
            m_svg.line({panel_x, y + 9}, {picture_width - 40, y + 9}, "#edf0f3", 1);
            y += 30;
        }
    }

    SvgWriter m_svg;
    const Plot& m_plot;
    const double m_right;
    Scale m_x;
    Scale m_y;
};

}  // namespace

void write_plot(std::ostream& out, const Plot& plot) { Drawing(out, plot).write(); }

}  // namespace zxhost
