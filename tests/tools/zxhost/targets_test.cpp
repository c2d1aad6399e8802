#include "targets.h"

#include <gtest/gtest.h>

#include <limits>

#include "exit_status.h"

namespace {

using namespace zxhost;

constexpr double largest = std::numeric_limits<double>::max();

// The text of the refusal; a failure of the test if there is none, or not for wrong usage.
template <class Function>
std::string refusal(Function function) {
    try {
        function();
    } catch (const HostError& error) {
        EXPECT_EQ(error.status, ExitStatus::WrongUsage);
        EXPECT_FALSE(error.way_out.empty());
        return error.what();
    }
    ADD_FAILURE() << "not refused";
    return "";
}

TEST(ParseTargets, ReadsEachForm) {
    const auto targets = parse_targets({"x=12.5", "y+=-3", "z=min", "c=max"}, TargetForms::RelativeAndLimits);
    ASSERT_EQ(targets.m_targets.size(), 4u);
    EXPECT_EQ(targets.m_targets.at("x").value, 12.5);
    EXPECT_FALSE(targets.m_targets.at("x").has_flag);
    EXPECT_EQ(targets.m_targets.at("y").value, -3.0);
    EXPECT_TRUE(targets.m_targets.at("y").has_flag);
    EXPECT_EQ(targets.m_targets.at("z").value, -largest);
    EXPECT_TRUE(targets.m_targets.at("z").has_flag);
    EXPECT_EQ(targets.m_targets.at("c").value, largest);
    EXPECT_TRUE(targets.m_axes.empty());
}

TEST(ParseTargets, TakesNamesAloneWhereAScanDoes) {
    const auto targets = parse_targets({"x=1", "c"}, TargetForms::RelativeAndNames);
    EXPECT_EQ(targets.m_targets.size(), 1u);
    EXPECT_EQ(targets.m_axes, AxisSet{"c"});
    refusal([] { parse_targets({"c"}, TargetForms::Relative); });
}

TEST(ParseTargets, LimitsAreForMotionsAlone) {
    EXPECT_EQ(refusal([] { parse_targets({"x=min"}, TargetForms::Relative); }),
              "'x=min': 'min' is not a number");
    refusal([] { parse_targets({"x+=max"}, TargetForms::RelativeAndLimits); });
}

TEST(ParseTargets, NamesKeepQuotesAndBlanks) {
    const auto targets = parse_targets({"a \"b\" c=1"}, TargetForms::Absolute);
    EXPECT_EQ(targets.m_targets.begin()->first, "a \"b\" c");
}

TEST(ParseTargets, RefusesWhatIsNoTarget) {
    const auto refused = [](const char* text) {
        return refusal([text] { parse_targets({text}, TargetForms::RelativeAndLimits); });
    };
    EXPECT_EQ(refused("x"), "'x': no target");
    EXPECT_EQ(refused("x="), "'x=': '' is not a number");
    EXPECT_EQ(refused("x=1mm"), "'x=1mm': '1mm' is not a number");
    EXPECT_EQ(refused("x=nan"), "'x=nan': a target must be a finite number");
    EXPECT_EQ(refused("x=-inf"), "'x=-inf': a target must be a finite number");
    EXPECT_EQ(refused("=1"), "'': an axis needs a name");
    EXPECT_EQ(refused("+=1"), "'': an axis needs a name");
    EXPECT_EQ(refused(""), "'': no target");
}

TEST(ParseTargets, RefusesARelativeDistanceThatWouldMeanALimit) {
    EXPECT_EQ(refusal([] { parse_targets({"x+=1.7976931348623157e308"}, TargetForms::RelativeAndLimits); }),
              "'x+=1.7976931348623157e308': too far");
}

TEST(ParseTargets, RefusesAnAxisNamedTwice) {
    const std::string twice = "'x': this axis is named twice";
    EXPECT_EQ(refusal([] { parse_targets({"x=1", "y=2", "x+=1"}, TargetForms::Relative); }), twice);
    EXPECT_EQ(refusal([] { parse_targets({"x=1", "x"}, TargetForms::RelativeAndNames); }), twice);
    EXPECT_EQ(refusal([] { parse_axis_set({"x", "x"}); }), twice);
    EXPECT_EQ(refusal([] { parse_axis_list({"x", "x"}); }), twice);
    EXPECT_EQ(refusal([] { parse_values({"x=1", "x=1"}); }), twice);
}

TEST(ParseValues, TakesAbsoluteNumbersAlone) {
    EXPECT_EQ(parse_values({"speed=20", "x=-1"}),
              (std::map<std::string, double>{{"speed", 20.0}, {"x", -1.0}}));
    EXPECT_EQ(refusal([] { parse_values({"x+=1"}); }), "'x+=1': not relative here");
}

TEST(ParseAxisList, KeepsTheOrder) {
    EXPECT_EQ(parse_axis_list({"z", "x"}), (std::vector<std::string>{"z", "x"}));
    EXPECT_EQ(refusal([] { parse_axis_list({""}); }), "'': an axis needs a name");
}

}  // namespace
