// What the records of a watch look like.
#include "watch_output.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using namespace zxhost;

const double unknown = std::numeric_limits<double>::quiet_NaN();

struct Shown {
    std::ostringstream out;
    std::size_t number = 0;

    void add(WatchOutput& output, double seconds, const std::vector<double>& values) {
        output.add({++number, seconds, values});
        output.flush();
    }
};

TEST(WatchCsv, HasAHeadAndALineForEachRecord) {
    Shown shown;
    const auto csv = record_csv(shown.out, {{"x", "mm"}, {"c", "deg"}, {"a,\"b", "mm"}, {"tip", ""}});
    shown.add(*csv, 0.01, {1.5, -0.1, 1e300, unknown});
    shown.add(*csv, 1.25, {2.0, 3.0, 4.0, 5.0});
    EXPECT_EQ(shown.out.str(),
              "record,seconds [s],x [mm],c [deg],\"a,\"\"b [mm]\",tip\n"
              "1,0.0100,1.5,-0.1,1e+300,nan\n"
              "2,1.2500,2,3,4,5\n");
}

TEST(WatchLines, StandInColumns) {
    Shown shown;
    const auto lines = record_lines(shown.out, {{"x", "mm"}});
    shown.add(*lines, 0.5, {-12.34567});
    EXPECT_EQ(shown.out.str(),
              "  record     seconds        x [mm]\n"
              "       1       0.500      -12.3457\n");
}

TEST(WatchJson, IsADocumentForEachRecord) {
    Shown shown;
    const auto json = record_json(shown.out, {{"x", "mm"}, {"z", "mm"}});
    shown.add(*json, 0.5, {1.5, unknown});
    EXPECT_EQ(shown.out.str(), "{\"record\":1,\"seconds\":0.5,\"values\":{\"x\":1.5,\"z\":null}}\n");
}

TEST(WatchTable, IsDrawnOverItselfAndNotTooOften) {
    Shown shown;
    const auto table = live_table(shown.out, {{"x", "mm"}, {"longer", "mm"}});
    table->flush();
    EXPECT_EQ(shown.out.str(), "");
    shown.add(*table, 1.0, {1.0, 2.0});
    const std::string first = shown.out.str();
    EXPECT_EQ(first.find("record 1 after 1.0 s, 1.0 each second"), 0u);
    EXPECT_NE(first.find("longer  2.0000  mm"), std::string::npos) << first;
    shown.add(*table, 1.05, {3.0, 4.0});
    EXPECT_EQ(shown.out.str(), first);
    shown.add(*table, 1.2, {5.0, 6.0});
    const std::string second = shown.out.str().substr(first.size());
    const auto lines = std::count(first.begin(), first.end(), '\n');
    EXPECT_EQ(second.find("\x1b[" + std::to_string(lines) + "Arecord 3 after 1.2 s"), 0u) << second;
    shown.add(*table, 1.21, {7.0, 8.0});
    table->end();
    EXPECT_NE(shown.out.str().find("record 4 after 1.2 s"), std::string::npos);
    EXPECT_NE(shown.out.str().find("8.0000"), std::string::npos);
}

TEST(WatchTable, PutsManyAxesSideBySide) {
    Shown shown;
    std::vector<AxisLabel> axes;
    for (int i = 0; i < 50; ++i) axes.push_back({"a" + std::to_string(i), "mm"});
    const auto table = live_table(shown.out, axes);
    shown.add(*table, 1.0, std::vector<double>(50, 1.0));
    const std::string text = shown.out.str();
    EXPECT_LT(std::count(text.begin(), text.end(), '\n'), 24);
    for (const AxisLabel& axis : axes) EXPECT_NE(text.find(axis.name + " "), std::string::npos) << axis.name;
}

}  // namespace
