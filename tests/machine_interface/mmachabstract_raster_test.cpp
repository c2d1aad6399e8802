// Raster and scan-base axes: named cases, and every set of the nine names with every activity of the axes
// against a second reading of the rules.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "bare_machine.h"
#include "moutputchannel.h"

namespace {

// All axes are known; some are active.
class RasterMachine : public BareMachine {
public:
    explicit RasterMachine(MOutputChannel* output) : BareMachine(output, nullptr) {
        m_inactive.flags = MMACH_AXIS_INACTIVE;
    }
    const MMachAxisInfo* GetAxisInfo(const std::string& axis) override {
        if (axis == "unknown") return nullptr;
        return inactive.contains(axis) ? &m_inactive : &m_active;
    }

    std::set<std::string> inactive;

private:
    MMachAxisInfo m_active;
    MMachAxisInfo m_inactive;
};

std::string shown(const char* role) { return role ? role : "-"; }

class RasterTest : public testing::Test {
protected:
    ~RasterTest() override { EXPECT_EQ(take_text(), ""); }

    static AxisTargetMap targets(const AxisSet& axes) {
        AxisTargetMap map;
        for (const std::string& axis : axes) map[axis].value = 1.0;
        return map;
    }
    std::string take_text() {
        std::string text;
        channel.take_text(text, true);
        return text;
    }

    // The four roles as one text, or the error.
    template <class Request>
    std::string raster(const Request& request) {
        return answer([&] { return machine.GetRasterAxes(channel, request, r1, r2, r3, c); });
    }
    std::string raster_of(const AxisSet& axes) { return raster(targets(axes)); }
    std::string scanbase(const AxisSet& axes) {
        return answer([&] { return machine.GetScanbaseAxes(channel, axes, r1, r2, r3, c); });
    }
    std::string roles() { return shown(r1) + " " + shown(r2) + " " + shown(r3) + " " + shown(c); }

    template <class Ask>
    std::string answer(Ask ask) {
        r1 = r2 = r3 = c = "before";
        if (ask()) return roles();
        std::string text = take_text();
        const std::size_t begin = text.find('"') + 1;
        return text.substr(begin, text.rfind('"') - begin);
    }

    const std::string before = "before before before before";
    const std::string wrong = "wrong combination of raster axes";
    const std::string none = "no axis to raster";
    MOutputChannel channel{0};
    RasterMachine machine{&channel};
    const char* r1 = nullptr;
    const char* r2 = nullptr;
    const char* r3 = nullptr;
    const char* c = nullptr;
};

TEST_F(RasterTest, WithAllAxesActive) {
    EXPECT_EQ(raster_of({"x"}), "x y z -");
    EXPECT_EQ(raster_of({"y"}), "x y z -");
    EXPECT_EQ(raster_of({"z"}), "x y z -");
    EXPECT_EQ(raster_of({"x", "y", "z"}), "x y z -");
    EXPECT_EQ(raster_of({"c"}), "- - - c");
    EXPECT_EQ(raster_of({"x", "c"}), "x y z c");
    EXPECT_EQ(raster_of({"x", "tz"}), "x y tz -");
    EXPECT_EQ(raster_of({"kx"}), "kx ky z -");
    EXPECT_EQ(raster_of({"kx", "tz"}), "kx ky tz -");
    EXPECT_EQ(raster_of({"tx"}), "tx ty z -");
    EXPECT_EQ(raster_of({"tx", "z"}), "tx ty z -");
    EXPECT_EQ(raster_of({"tz"}), "tx ty tz -");
    EXPECT_EQ(raster_of({"hb"}), "hb - - -");
}

TEST_F(RasterTest, ForbiddenMixturesLeaveTheResults) {
    for (const AxisSet& axes : {AxisSet{"x", "kx"},
                                {"y", "ky"},
                                {"c", "kx"},
                                {"tx", "x"},
                                {"ty", "c"},
                                {"kx", "tx"},
                                {"z", "tz"}}) {
        EXPECT_EQ(raster_of(axes), wrong);
        EXPECT_EQ(roles(), before);
    }
}

TEST_F(RasterTest, NoAxisOfAGroupIsNoRequest) {
    EXPECT_EQ(raster_of({}), none);
    EXPECT_EQ(raster_of({"hb", "sw"}), none);
    EXPECT_EQ(raster(std::vector<AxisTargetMap>()), none);
    EXPECT_EQ(raster(std::vector<AxisTargetMap>(3)), none);
    EXPECT_EQ(roles(), before);
}

TEST_F(RasterTest, ALoneSpecialAxisIsTakenAsItStands) {
    machine.inactive = {"hb"};
    const AxisTargetMap axes = targets({"hb"});
    EXPECT_EQ(raster(axes), "hb - - -");
    EXPECT_EQ(r1, axes.begin()->first.c_str());
    EXPECT_EQ(raster(std::vector<AxisTargetMap>{axes}), none) << "a polygon of one point is no single axis";
    EXPECT_EQ(raster_of({"hb", "x"}), "x y z -");
}

TEST_F(RasterTest, InactiveAxesAreReplacedWhereTheyCan) {
    machine.inactive = {"kx", "ky"};
    EXPECT_EQ(raster_of({"kx", "z"}), "x y z -");
    EXPECT_EQ(raster_of({"kx", "tz"}), "tx ty tz -");
    machine.inactive = {"x", "y"};
    EXPECT_EQ(raster_of({"z"}), "- - z -");
    machine.inactive = {"z"};
    EXPECT_EQ(raster_of({"x"}), "x y tz -");
    machine.inactive = {"c"};
    EXPECT_EQ(raster_of({"c"}), "- - - -");
}

TEST_F(RasterTest, ACircleMovesInXYZ) {
    MMachCircle circle;
    EXPECT_EQ(raster(circle), "x y z -");
    circle.axes.m_targets = targets({"c"});
    circle.axes.m_axes = {"kx"};
    EXPECT_EQ(raster(circle), "x y z c");
    for (const char* axis : {"kx", "ky", "tx", "ty", "tz"}) {
        circle.axes.m_targets = targets({axis});
        EXPECT_EQ(raster(circle), wrong) << axis;
    }
    circle.axes.m_targets = targets({"hb"});
    EXPECT_EQ(raster(circle), "x y z -");
}

TEST_F(RasterTest, APolygonHasTheAxesOfAllItsPoints) {
    EXPECT_EQ(raster(std::vector<AxisTargetMap>{targets({"c"}), {}, targets({"x", "hb"})}), "x y z c");
    EXPECT_EQ(raster(std::vector<AxisTargetMap>{targets({"c"}), targets({"kx"})}), wrong);
}

TEST_F(RasterTest, Scanbase) {
    EXPECT_EQ(scanbase({"y", "c"}), "- y - c");
    EXPECT_EQ(scanbase({"x", "y", "z", "c"}), "x y z c");
    EXPECT_EQ(scanbase({}), none);
    EXPECT_EQ(roles(), "- - - -");
    const AxisSet one = {"hb"};
    EXPECT_EQ(scanbase(one), "hb - - -");
    EXPECT_EQ(r1, one.begin()->c_str());
    EXPECT_EQ(scanbase({"z"}), "z - - -") << "a single axis is the first, whatever it is";
    EXPECT_EQ(scanbase({"unknown"}), "scanbase axis is inactive");
    EXPECT_EQ(roles(), "- - - -");
    EXPECT_EQ(scanbase({"x", "hb"}), "invalid scanbase axes combination");
    EXPECT_EQ(roles(), "x - - -");
}

TEST_F(RasterTest, ScanbaseWithInactiveAxes) {
    machine.inactive = {"x", "y", "hb"};
    EXPECT_EQ(scanbase({"x", "z"}), "- - z -");
    EXPECT_EQ(scanbase({"x", "y"}), "invalid scanbase axes combination");
    EXPECT_EQ(roles(), "- - - -");
    EXPECT_EQ(scanbase({"hb"}), "scanbase axis is inactive");
}

// The second reading: step by step over plain flags, for one request and one activity.
struct SecondReading {
    using Role = std::optional<std::string>;

    const AxisSet& request;
    const AxisSet& inactive;

    bool has(const char* axis) const { return request.contains(axis); }
    Role active(const char* axis) const { return inactive.contains(axis) ? Role() : Role(axis); }

    std::string answer() const {
        bool has_x = has("x");
        bool has_y = has("y");
        const bool has_z = has("z");
        const bool has_c = has("c");
        const bool has_tz = has("tz");
        const bool k = has("kx") || has("ky");
        const bool t = has("tx") || has("ty");
        if (k && (has_x || has_y || has_c)) return "wrong";
        if (t && (has_x || has_y || has_c)) return "wrong";
        if (k && t) return "wrong";
        if (has_z && has_tz) return "wrong";

        Role raster1, raster2, raster3, rotary;
        bool fill_third = false;
        if (k) {
            raster1 = active("kx");
            raster2 = active("ky");
            fill_third = true;
        } else if (t) {
            raster1 = active("tx");
            raster2 = active("ty");
            fill_third = true;
        } else if (!has_x && !has_y && !has_z && !has_c && !has_tz) {
            return "none";
        } else {
            if (has_x || has_y || has_z) has_x = has_y = fill_third = true;
            if (has_x) raster1 = active("x");
            if (has_y) raster2 = active("y");
        }

        if (has_z && active("z")) {
            raster3 = "z";
        } else if (has_tz && active("tz")) {
            raster3 = "tz";
        } else if (fill_third && active("z")) {
            raster3 = "z";
        } else if (fill_third && active("tz")) {
            raster3 = "tz";
        }

        if (!raster1 && !raster2) {
            if (has_z) {
                raster1 = active("x");
                raster2 = active("y");
            } else if (has_tz) {
                raster1 = active("tx");
                raster2 = active("ty");
            }
        }
        if (has_c) rotary = active("c");
        return raster1.value_or("-") + " " + raster2.value_or("-") + " " + raster3.value_or("-") + " " +
               rotary.value_or("-");
    }
};

TEST_F(RasterTest, EverySetOfNamesWithEveryActivity) {
    const char* const nine[] = {"x", "y", "z", "c", "kx", "ky", "tx", "ty", "tz"};
    const auto subset = [&nine](unsigned bits) {
        AxisSet names;
        for (unsigned i = 0; i < 9; ++i) {
            if ((bits >> i) & 1U) names.insert(nine[i]);
        }
        return names;
    };
    std::vector<AxisSet> sets;
    std::vector<AxisTargetMap> requests;
    for (unsigned bits = 0; bits < 512; ++bits) {
        sets.push_back(subset(bits));
        requests.push_back(targets(sets.back()));
    }
    for (const AxisSet& inactive : sets) {
        machine.inactive = inactive;
        for (unsigned bits = 0; bits < 512; ++bits) {
            std::string expected = SecondReading{sets[bits], inactive}.answer();
            if (expected == "wrong") expected = wrong;
            if (expected == "none") expected = none;
            ASSERT_EQ(raster(requests[bits]), expected) << "request " << testing::PrintToString(sets[bits])
                                                        << ", inactive " << testing::PrintToString(inactive);
        }
    }
}

}  // namespace
