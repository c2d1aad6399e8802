#include "ring_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <numbers>
#include <sstream>

#include "known_ring.h"
#include "ring_report.h"

namespace {

using namespace zxhost;

KnownRing lobed_ring() {
    KnownRing ring;
    ring.centre = {10.0123, -4.9917};
    ring.radius = 25.0045;
    ring.noise = 0.0002;
    ring.waves = {{2, 0.004, 30}, {3, 0.0025, 75}};
    return ring;
}

std::vector<PlanePoint> points_of(const KnownRing& ring, int count, double sweep) {
    std::vector<PlanePoint> points;
    for (int i = 0; i < count; ++i) {
        const double angle = sweep * i / count;
        const double radius = ring.radius + ring.deviation(angle);
        points.push_back(
            {ring.centre.x + radius * std::cos(angle), ring.centre.y + radius * std::sin(angle)});
    }
    return points;
}

std::string picture_of(const std::vector<PlanePoint>& points, const std::string& title) {
    RingPicture picture;
    picture.title = title;
    picture.points = points;
    picture.fit = *fit_ring(points);
    picture.known_deviation = [](double angle) { return lobed_ring().deviation(angle); };
    picture.numbers = {{"a & b", "<1>"}};
    std::ostringstream out;
    write_ring_picture(out, picture);
    return out.str();
}

constexpr double full = 2.0 * std::numbers::pi;

std::size_t count_of(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(RingPicture, StatesItsMagnificationAxesAndUnits) {
    const auto points = points_of(lobed_ring(), 3000, full);
    const std::string svg = picture_of(points, "Ring");
    const double magnification = ring_magnification(*fit_ring(points));
    EXPECT_EQ(magnification, 1000.0);
    for (const char* text : {"enlarged 1000 times", "x [mm]", "y [mm]", "ring: ", "deviation: ", "µm", "90",
                             "10.0123 mm", "-4.9917 mm", "least-squares circle", "known form"})
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    EXPECT_EQ(svg.find("nan"), std::string::npos);
    EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
}

TEST(RingPicture, EscapesTexts) {
    const std::string svg = picture_of(points_of(lobed_ring(), 100, full), "<\"R\" & D\x1b>");
    EXPECT_NE(svg.find("&lt;&quot;R&quot; &amp; D\\x1b>"), std::string::npos);
    EXPECT_NE(svg.find("a &amp; b"), std::string::npos);
    EXPECT_EQ(svg.find("<\"R\""), std::string::npos);
}

TEST(RingPicture, FillsOnlyAWholeRing) {
    EXPECT_EQ(count_of(picture_of(points_of(lobed_ring(), 1000, full), "r"), "evenodd"), 1u);
    EXPECT_EQ(count_of(picture_of(points_of(lobed_ring(), 1000, full / 2), "r"), "evenodd"), 0u);
}

TEST(RingPicture, StaysSmallForVeryManyPoints) {
    EXPECT_LT(picture_of(points_of(lobed_ring(), 200000, full), "r").size(), 1000000u);
}

TEST(RingPicture, APerfectRingStillHasAPicture) {
    KnownRing ring = lobed_ring();
    ring.waves.clear();
    const std::string svg = picture_of(points_of(ring, 100, full), "round");
    EXPECT_EQ(svg.find("nan"), std::string::npos);
    EXPECT_EQ(svg.find("inf"), std::string::npos);
}

TEST(RingReport, ComparesWithTheTruth) {
    const KnownRing known = lobed_ring();
    const auto fit = fit_ring(points_of(known, 3600, full));
    const Json rows = ring_rows(*fit, known);
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[2]["quantity"], "radius");
    EXPECT_NEAR(rows[2]["measured"].get<double>(), 25.0045, 1e-6);
    EXPECT_EQ(rows[2]["known"], 25.0045);
    EXPECT_EQ(rows[2]["limit"], 0.0002);
    EXPECT_NEAR(rows[3]["measured"].get<double>(), known.peak_to_valley(), 1e-6);
    EXPECT_TRUE(within_limits(rows));
}

TEST(RingReport, TellsADifferenceBeyondTheNoise) {
    KnownRing known = lobed_ring();
    const auto fit = fit_ring(points_of(known, 3600, full));
    known.radius += 0.00021;
    const Json rows = ring_rows(*fit, known);
    EXPECT_FALSE(rows[2]["within"].get<bool>());
    EXPECT_TRUE(rows[0]["within"].get<bool>());
    EXPECT_FALSE(within_limits(rows));
    RingFit wrong = *fit;
    wrong.radius = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(ring_rows(wrong, known)[2]["within"].get<bool>());
}

TEST(RingReport, WithoutTruthTellsTheMeasureAlone) {
    const auto fit = fit_ring(points_of(lobed_ring(), 3600, full));
    const Json rows = ring_rows(*fit, std::nullopt);
    EXPECT_FALSE(rows[0].contains("known"));
    EXPECT_TRUE(within_limits(rows));
    std::ostringstream out;
    write_ring_table(out, rows);
    EXPECT_EQ(out.str().find("known"), std::string::npos);
    EXPECT_NE(out.str().find("radius"), std::string::npos);
}

}  // namespace
