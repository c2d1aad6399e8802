#include "svg.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

#include "number_text.h"

namespace zxhost {
namespace {

std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : printable(text)) {
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '"')
            out += "&quot;";
        else
            out += c;
    }
    return out;
}

}  // namespace

std::string path_to(SvgPoint p, bool first) {
    return fmt::format("{}{:.2f} {:.2f}", first ? "M" : "L", p.x, p.y);
}

SvgWriter::SvgWriter(std::ostream& out, double width, double height, const std::string& title) : m_out(out) {
    m_out << fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" "
        "font-family=\"DejaVu Sans, Segoe UI, Helvetica, Arial, sans-serif\">\n"
        "<title>{2}</title>\n"
        "<rect width=\"{0}\" height=\"{1}\" fill=\"#ffffff\"/>\n",
        width, height, escaped(title));
}

void SvgWriter::line(SvgPoint a, SvgPoint b, std::string_view colour, double width, std::string_view more) {
    m_out << fmt::format(
        "<line x1=\"{:.2f}\" y1=\"{:.2f}\" x2=\"{:.2f}\" y2=\"{:.2f}\" stroke=\"{}\" "
        "stroke-width=\"{}\"{}/>\n",
        a.x, a.y, b.x, b.y, colour, width, more);
}

void SvgWriter::circle(SvgPoint centre, double radius, std::string_view colour, double width,
                       std::string_view more) {
    m_out << fmt::format(
        "<circle cx=\"{}\" cy=\"{}\" r=\"{:.2f}\" fill=\"none\" stroke=\"{}\" stroke-width=\"{}\"{}/>\n",
        centre.x, centre.y, radius, colour, width, more);
}

void SvgWriter::disc(SvgPoint centre, double radius, std::string_view colour) {
    m_out << fmt::format("<circle cx=\"{:.2f}\" cy=\"{:.2f}\" r=\"{}\" fill=\"{}\"/>\n", centre.x, centre.y,
                         radius, colour);
}

void SvgWriter::path(const std::string& path, std::string_view attributes) {
    m_out << fmt::format("<path d=\"{}\"{}/>\n", path, attributes);
}

void SvgWriter::text(SvgPoint p, std::string_view anchor, double size, std::string_view colour,
                     const std::string& what, std::string_view more) {
    m_out << fmt::format(
        "<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\" font-size=\"{}\" fill=\"{}\"{}>{}</text>\n", p.x,
        p.y, anchor, size, colour, more, escaped(what));
}

double round_down(double limit) {
    constexpr std::array steps{8.0, 6.0, 5.0, 4.0, 3.0, 2.5, 2.0, 1.5, 1.0};
    const double power = std::pow(10.0, std::floor(std::log10(limit)));
    for (const double step : steps)
        if (step * power <= limit * (1.0 + 1e-12)) return step * power;
    return power;
}

}  // namespace zxhost
