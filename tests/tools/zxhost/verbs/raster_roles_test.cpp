// The roles of a raster with their reasons: named cases, and no reason that contradicts the machine.
#include "raster_roles.h"

#include <gtest/gtest.h>

#include <array>

#include "exit_status.h"
#include "fake_machine.h"
#include "notifier.h"

namespace {

using namespace zxhost;

class RasterMachine : public FakeMachine {
public:
    using FakeMachine::FakeMachine;
    const MMachAxisInfo* GetAxisInfo(const std::string& axis) override {
        if (missing.contains(axis)) return nullptr;
        return inactive.contains(axis) ? &m_inactive : &m_active;
    }

    AxisSet inactive;
    AxisSet missing;

private:
    static MMachAxisInfo info(std::uint32_t flags) {
        MMachAxisInfo axis;
        axis.flags = flags;
        return axis;
    }
    MMachAxisInfo m_active = info(0);
    MMachAxisInfo m_inactive = info(MMACH_AXIS_INACTIVE);
};

class RasterRolesTest : public testing::Test {
protected:
    std::vector<RasterRole> roles(const AxisSet& axes, RasterForm form = RasterForm::Axes) {
        return raster_roles(machine, {form, {axes}});
    }

    // "x (asked for) y (completes the raster) ..."
    std::string text(const AxisSet& axes, RasterForm form = RasterForm::Axes) {
        std::string text;
        for (const RasterRole& role : roles(axes, form))
            text +=
                (text.empty() ? "" : " ") + (role.axis.empty() ? "-" : role.axis) + " (" + role.reason + ")";
        return text;
    }

    std::string refusal(const AxisSet& axes, RasterForm form = RasterForm::Axes) {
        try {
            return text(axes, form);
        } catch (const HostError& error) {
            EXPECT_FALSE(error.way_out.empty());
            return error.what();
        }
    }

    // The role went to an axis that is active, and its reason agrees with the machine.
    void expect_truth(const RasterRole& role, const AxisSet& asked) const {
        const bool is_filled = !role.axis.empty();
        EXPECT_FALSE(is_filled && machine.inactive.contains(role.axis));
        EXPECT_EQ(role.reason == "asked for", is_filled && asked.contains(role.axis)) << role.reason;
        EXPECT_FALSE(is_filled && role.reason == "not asked for");
        EXPECT_FALSE(!is_filled && role.reason == "completes the raster");
        bool names_one = false;
        for (const char* name : names) {
            // Whole words: "x" is part of "kx".
            const bool is_told =
                (" " + role.reason).find(" " + std::string(name) + " is inactive") != std::string::npos;
            EXPECT_FALSE(is_told && !machine.inactive.contains(name)) << role.reason;
            names_one = names_one || is_told;
        }
        EXPECT_TRUE(is_filled || names_one != (role.reason == "not asked for")) << role.reason;
    }

    static constexpr std::array names{"x", "y", "z", "c", "kx", "ky", "tx", "ty", "tz"};
    MOutputChannel channel{0};
    HostNotifier notifier;
    RasterMachine machine{channel, notifier};
};

TEST_F(RasterRolesTest, SayWhoAskedForThem) {
    EXPECT_EQ(text({"x", "c"}),
              "x (asked for) y (completes the raster) z (completes the raster) c (asked for)");
    EXPECT_EQ(text({"c"}), "- (not asked for) - (not asked for) - (not asked for) c (asked for)");
    EXPECT_EQ(text({"hb"}), "hb (asked for) - (not asked for) - (not asked for) - (not asked for)");
    EXPECT_EQ(text({"c"}, RasterForm::Circle), "x (asked for) y (asked for) z (asked for) c (asked for)");
    EXPECT_EQ(text({"y", "c"}, RasterForm::Scanbase),
              "- (not asked for) y (asked for) - (not asked for) c (asked for)");
}

TEST_F(RasterRolesTest, SayWhichAxisIsInTheWay) {
    machine.inactive = {"kx", "z"};
    machine.missing = {"ky"};
    EXPECT_EQ(
        text({"kx", "z"}),
        "x (stands in: kx is inactive) y (stands in: this machine has no ky) tz (stands in: z is inactive) "
        "- (not asked for)");
    machine.inactive = {"x", "y", "c"};
    EXPECT_EQ(text({"z", "c"}), "- (x is inactive) - (y is inactive) z (asked for) - (c is inactive)");
}

TEST_F(RasterRolesTest, ListAxesThatTakeNone) {
    EXPECT_EQ(text({"x", "hb"}).substr(text({"x"}).size()), " hb (takes no part in a raster)");
    EXPECT_EQ(roles({"x", "hb"}).back().role, "");
}

TEST_F(RasterRolesTest, TakeThePointsOfAPolygonTogether) {
    const auto roles = raster_roles(machine, {RasterForm::Polygon, {{"x"}, {"c"}, {"tz"}}});
    EXPECT_EQ(roles[0].axis, "x");
    EXPECT_EQ(roles[2].axis, "tz");
    EXPECT_EQ(roles[3].axis, "c");
}

TEST_F(RasterRolesTest, RefusalsHaveAWayOut) {
    EXPECT_EQ(refusal({"x", "kx"}), "raster: wrong combination of raster axes");
    EXPECT_EQ(refusal({}), "raster: no axis to raster");
    EXPECT_EQ(refusal({"x", "hb"}, RasterForm::Scanbase), "raster: invalid scanbase axes combination");
    machine.inactive = {"hb"};
    EXPECT_EQ(refusal({"hb"}, RasterForm::Scanbase), "raster: scanbase axis is inactive");
}

// Every set of the nine names, with every activity of the axes: a role goes to an axis that is active, and
// the reason agrees with the machine.
TEST_F(RasterRolesTest, NeverContradictTheMachine) {
    const auto subset = [&](unsigned bits) {
        AxisSet set;
        for (std::size_t i = 0; i < names.size(); ++i)
            if (bits >> i & 1U) set.insert(names[i]);
        return set;
    };
    std::vector<AxisSet> requests;  // that are none of the forbidden mixtures, whatever is active
    for (unsigned bits = 1; bits < 512; ++bits) try {
            roles(subset(bits));
            requests.push_back(subset(bits));
        } catch (const HostError&) {
        }
    EXPECT_EQ(requests.size(), 41u);
    for (unsigned activity = 0; activity < 512; ++activity) {
        machine.inactive = subset(activity);
        for (const AxisSet& asked : requests)
            for (const RasterRole& role : roles(asked)) expect_truth(role, asked);
    }
}

}  // namespace
