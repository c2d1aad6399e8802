// What is made of scan files: other forms, pictures, fits.
#include "scan_results.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <numbers>
#include <sstream>

#include "exit_status.h"
#include "plot.h"
#include "scan_export.h"
#include "scan_points.h"
#include "scan_writer.h"
#include "shapes.h"
#include "temporary_directory.h"

namespace {

using namespace zxhost;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class ScanResultsTest : public ::testing::Test {
protected:
    void write(const std::vector<std::string>& columns, const std::vector<std::vector<double>>& points) {
        ScanWriter writer(m_file, {"Round 4", "probe 1", "2026-01-31T12:00:00Z", "scan", columns, {}});
        for (const auto& point : points) writer.add(point);
        writer.finish();
    }

    // 100 points of a ring about (1, 2) in height 3, with two lobes.
    void write_ring() {
        std::vector<std::vector<double>> points;
        for (int i = 0; i < 100; ++i) {
            const double angle = i * std::numbers::pi / 50.0;
            const double radius = 25.0 + 0.002 * std::cos(2.0 * angle);
            points.push_back({1.0 + radius * std::cos(angle), 2.0 + radius * std::sin(angle), 3.0, 0.1 * i});
        }
        write({"x", "y", "z", "time"}, points);
    }

    // What it prints beside the result stays in m_notes.
    Json make(const ScanResults& results) { return make_results(m_file, results, m_notes); }

    // Its message, and that its status is this.
    std::string refusal(const ScanResults& results, ExitStatus status) {
        try {
            make(results);
        } catch (const HostError& error) {
            EXPECT_EQ(error.status, status) << error.what();
            return error.what();
        }
        return "a result";
    }

    double quantity(const Json& result, const std::string& name) {
        for (const Json& row : result["fit"]["quantities"])
            if (row["quantity"] == name) return row["value"].get<double>();
        ADD_FAILURE() << name << " in " << result.dump();
        return nan;
    }

    TemporaryDirectory m_directory;
    const std::string m_file = m_directory.path("scan.csv");
    const std::string m_out = m_directory.path("out");
    std::ostringstream m_notes;
};

TEST_F(ScanResultsTest, PlyHoldsCountAndOrigin) {
    write({"x", "y", "z", "time"}, {{1, 2, 3, 0}, {0.1, -2.5, 1e-7, 1}});
    const Json result = make({.ply = m_out});
    EXPECT_EQ(result["files"][0]["points"], 2);
    EXPECT_EQ(m_directory.content("out"),
              "ply\nformat ascii 1.0\ncomment machine: Round 4\ncomment probe: probe 1\n"
              "comment time: 2026-01-31T12:00:00Z\ncomment action: scan\n"
              "comment x: x [mm]\ncomment y: y [mm]\ncomment z: z [mm]\n"
              "element vertex 2\nproperty double x\nproperty double y\nproperty double z\nend_header\n"
              "1 2 3\n0.1 -2.5 1e-07\n");
}

TEST_F(ScanResultsTest, XyzIsLinesOfThreeNumbersOfTheAxesThatAreAskedFor) {
    write({"x", "y", "z", "time"}, {{1, 2, 3, 0}, {0.1, -2.5, 1e-7, 1}});
    make({.xyz = m_out, .axes = {"z", "x", "time"}});
    EXPECT_EQ(m_directory.content("out"), "3 1 0\n1e-07 0.1 1\n");
}

TEST_F(ScanResultsTest, NumbersThatNoFormHoldsAreLeftOutAndCounted) {
    write({"x", "y", "z"}, {{1, 2, 3}, {nan, 2, 3}, {1, 1.0 / 0.0, 3}, {1, 2, 1e101}, {4, 5, 6}});
    const Json result = make({.ply = m_out, .xyz = m_directory.path("xyz")});
    for (const Json& file : result["files"]) {
        EXPECT_EQ(file["points"], 2);
        EXPECT_EQ(file["left_out"], 3);
    }
    EXPECT_NE(m_directory.content("out").find("element vertex 2\n"), std::string::npos);
    EXPECT_EQ(m_directory.content("xyz"), "1 2 3\n4 5 6\n");
}

TEST_F(ScanResultsTest, ACutScanGivesWhatItHasAndSaysSo) {
    {
        ScanWriter writer(m_file, {"", "", "", "", {"x", "y", "z"}, {}});
        writer.add({1, 2, 3});
        writer.cut("aborted");
    }
    make({.ply = m_out});
    EXPECT_NE(m_directory.content("out").find("comment scan: cut\nelement vertex 1\n"), std::string::npos);
    EXPECT_NE(m_notes.str().find("scan.csv: cut at line 8, byte "), std::string::npos) << m_notes.str();
}

TEST_F(ScanResultsTest, ADamagedScanGivesNothing) {
    write_ring();
    std::string content = m_directory.content("scan.csv");
    content[content.size() / 2] ^= 1;
    m_directory.file("scan.csv", content);
    for (const ScanResults& results : {ScanResults{.ply = m_out}, {.xyz = m_out}, {.picture = m_out}})
        EXPECT_NE(refusal(results, ExitStatus::MachineError).find("damaged at line"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(m_out));
    EXPECT_FALSE(std::filesystem::exists(m_out + ".part"));
}

TEST_F(ScanResultsTest, WrongQuestionsAreRefused) {
    write({"x", "c", "z"}, {{1, 2, 3}, {2, 3, 5}, {0, 0, 1}});
    using enum ExitStatus;
    EXPECT_NE(refusal({.ply = m_out}, WrongUsage).find("no column 'y'"), std::string::npos);
    EXPECT_NE(refusal({.ply = m_out, .axes = {"x", "z"}}, WrongUsage).find("three axes"), std::string::npos);
    EXPECT_NE(refusal({.picture = m_out, .axes = {"x"}}, WrongUsage).find("two axes"), std::string::npos);
    EXPECT_NE(refusal({.picture = m_out, .axes = {"x", "x"}}, WrongUsage).find("twice"), std::string::npos);
    EXPECT_NE(refusal({.shape = "cube"}, WrongUsage).find("no shape 'cube'"), std::string::npos);
    EXPECT_NE(refusal({.shape = "circle", .axes = {"x", "c"}}, WrongUsage)
                  .find("x [mm] and c [deg] have different units"),
              std::string::npos);
    EXPECT_NE(refusal({.shape = "circle", .axes = {"x", "c", "z"}}, WrongUsage).find("takes no 3 axes"),
              std::string::npos);
    EXPECT_NE(refusal({.shape = "circle", .axes = {"x", "z"}}, MachineError)
                  .find("no circle goes through the 3 points: "),
              std::string::npos);
    m_directory.file("scan.csv", "x,y\n1,2\n");
    EXPECT_NE(refusal({.shape = "circle"}, WrongUsage).find("no scan file"), std::string::npos);
    EXPECT_NE(refusal({.xyz = m_directory.path("no/such/file")}, WrongUsage).find("can't be written"),
              std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(m_out));
}

TEST_F(ScanResultsTest, AFitTellsItsNumbersPictureAndDeviations) {
    write_ring();
    const std::string csv = m_directory.path("deviations.csv");
    const Json result = make({.picture = m_out, .shape = "circle", .deviations = csv});
    EXPECT_EQ(result["fit"]["points"], 100);
    EXPECT_NEAR(quantity(result, "centre x"), 1.0, 1e-9);
    EXPECT_NEAR(quantity(result, "centre y"), 2.0, 1e-9);
    EXPECT_NEAR(quantity(result, "radius"), 25.0, 1e-6);
    EXPECT_NEAR(quantity(result, "deviation from round"), 0.004, 1e-6);
    EXPECT_NEAR(quantity(result, "rms deviation"), 0.002 / std::numbers::sqrt2, 1e-6);
    const std::string svg = m_directory.content("out");
    for (const char* text : {"Circle: 4.00 µm from round", "x [mm]", "y [mm]", "Round 4", "enlarged"})
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    const std::string deviations = m_directory.content("deviations.csv");
    EXPECT_EQ(deviations.substr(0, deviations.find(',', 22)), "point,deviation [mm]\n1");
    EXPECT_EQ(std::count(deviations.begin(), deviations.end(), '\n'), 101);
    std::ostringstream table;
    write_results(table, result);
    EXPECT_NE(table.str().find("4.000"), std::string::npos) << table.str();
    EXPECT_NE(table.str().find("µm"), std::string::npos);
}

TEST_F(ScanResultsTest, EveryShapeHasAnAnswerAndAPicture) {
    std::vector<std::vector<double>> points;
    for (int i = 0; i < 50; ++i) points.push_back({0.1 * i, 3.0 + 0.001 * (i % 3), 0.2 * (i % 7), 0.1 * i});
    write({"x", "y", "z", "time"}, points);
    for (const char* shape : {"line", "plane"}) {
        make({.picture = m_out, .shape = shape});
        const std::string svg = m_directory.content("out");
        EXPECT_NE(svg.find("deviation [µm]"), std::string::npos) << shape;
        EXPECT_EQ(svg.find("nan"), std::string::npos);
    }
    const Json line = make({.shape = "line", .axes = {"x", "y", "z"}});
    EXPECT_EQ(line["fit"]["quantities"].size(), 3u + 3u + 3u);
    // In space the deviation from straight is the diameter of the cylinder that holds all points.
    EXPECT_EQ(quantity(line, "deviation from straight"), 2.0 * quantity(line, "highest deviation"));
    points.clear();
    for (int i = 0; i < 50; ++i) {
        const double z = -0.98 + 0.04 * i, across = std::sqrt(1.0 - z * z);
        points.push_back({10.0 * across * std::cos(2.4 * i), 10.0 * across * std::sin(2.4 * i), 10.0 * z});
    }
    write({"x", "y", "z"}, points);
    EXPECT_NEAR(quantity(make({.picture = m_out, .shape = "sphere"}), "radius"), 10.0, 1e-9);
}

TEST_F(ScanResultsTest, APictureShowsAnyTwoColumns) {
    write_ring();
    make({.picture = m_out, .axes = {"time", "z"}});
    const std::string svg = m_directory.content("out");
    for (const char* text : {"z [mm] over time [s]", ">time [s]<", ">z [mm]<", ">8<", "first point"})
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
}

std::string plotted(const std::vector<PlanePoint>& points, bool same_scale) {
    std::ostringstream out;
    write_plot(out, {"<t>", "s", "x", "y", points, same_scale, {{"a", "b"}}});
    EXPECT_EQ(out.str().find("nan"), std::string::npos);
    EXPECT_EQ(out.str().find("inf"), std::string::npos);
    EXPECT_NE(out.str().find("&lt;t>"), std::string::npos);
    return out.str();
}

TEST(Plot, StandsAnyFinitePoints) {
    plotted({}, false);
    for (const bool same : {false, true}) {
        plotted({{0, 0}}, same);
        plotted({{5, 5}, {5, 5}}, same);
        plotted({{1e100, -1e100}, {-1e100, 1e100}}, same);
        plotted({{1e9, 1e-9}, {1e9 + 1e-6, 2e-9}}, same);
    }
}

TEST(Plot, StaysSmallAndKeepsTheExtremesOfVeryManyPoints) {
    std::vector<PlanePoint> points;
    for (int i = 0; i < 500000; ++i) points.push_back({1.0 * i, std::sin(0.001 * i)});
    points[123457].y = 7.0;
    const std::string svg = plotted(points, false);
    EXPECT_LT(svg.size(), 500000u);
    points[123457].y = 0.0;
    EXPECT_NE(plotted(points, false), svg);
}

}  // namespace
