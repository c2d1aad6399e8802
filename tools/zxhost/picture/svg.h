// The few shapes that our pictures are made of, written as SVG.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace zxhost {

namespace svg {

inline constexpr std::string_view ink = "#1f2933";
inline constexpr std::string_view faint = "#7b8794";
inline constexpr std::string_view grid = "#d9dee4";
inline constexpr std::string_view curve = "#1560bd";
inline constexpr std::string_view known = "#d9730d";
inline constexpr std::string_view halo = " stroke=\"#ffffff\" stroke-width=\"5\" paint-order=\"stroke\"";

}  // namespace svg

// In pixels, x to the right and y down.
struct SvgPoint {
    double x = 0.0;
    double y = 0.0;
};

// "M1.00 2.00" for the first point of a path, "L1.00 2.00" for another.
std::string path_to(SvgPoint p, bool first);

// Writes the frame at once and its end when the object goes; borrows the stream. Every text is escaped.
// `more` holds further attributes, each with a blank before it.
class SvgWriter {
public:
    SvgWriter(std::ostream& out, double width, double height, const std::string& title);
    ~SvgWriter() { m_out << "</svg>\n"; }
    SvgWriter(const SvgWriter&) = delete;
    SvgWriter& operator=(const SvgWriter&) = delete;

    void line(SvgPoint a, SvgPoint b, std::string_view colour, double width, std::string_view more = "");
    void circle(SvgPoint centre, double radius, std::string_view colour, double width,
                std::string_view more = "");
    void disc(SvgPoint centre, double radius, std::string_view colour);
    void path(const std::string& path, std::string_view attributes);
    void text(SvgPoint p, std::string_view anchor, double size, std::string_view colour,
              const std::string& what, std::string_view more = "");

private:
    std::ostream& m_out;
};

// The largest of 1, 1.5, 2, 2.5, 3, 4, 5, 6, 8 times a power of ten that isn't above `limit`.
double round_down(double limit);

}  // namespace zxhost
