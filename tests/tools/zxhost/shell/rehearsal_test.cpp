#include "rehearsal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "fake_machine.h"
#include "notifier.h"
#include "open_machine.h"
#include "verb_host.h"

namespace {

using namespace zxhost;

MMachAxisTargets targets(const AxisTargetMap& map) {
    MMachAxisTargets result;
    result.m_targets = map;
    return result;
}

// x and y travel, w has no drive, hc is out of use, ka rests at some places.
class AxesMachine : public FakeMachine {
public:
    using FakeMachine::FakeMachine;
    const MMachAxisInfo* GetAxisInfo(const std::string& axis) override {
        for (const MMachAxisInfo& info : m_axes)
            if (info.name == axis) return &info;
        return nullptr;
    }
    double GetAxisValue(const char* axis) override {
        return GetAxisInfo(axis) || std::string(axis) == "speed" ? 10.0 : std::nan("");
    }
    bool IsInitialized() override { return initialized; }
    bool IsMovePossibleWith(const AxisSet& axes) override { return !axes.contains("ka") || axes.size() == 1; }
    bool IsTipDefined(long probe, long tip) override { return probe == 1 && tip == 1; }
    bool IsProbeDefined(long probe) override { return probe == 1; }

    bool initialized = true;

private:
    static MMachAxisInfo axis(const char* name, std::uint32_t flags, double lower, double upper) {
        MMachAxisInfo info;
        info.name = name;
        info.flags = flags;
        info.number1 = lower;
        info.number2 = upper;
        info.step = 0.1;
        return info;
    }
    static MMachAxisInfo resting() {
        MMachAxisInfo info = axis("ka", MMACH_AXIS_BOUNDED, 0, 270);
        info.step = 0.0;
        info.values = {0, 90, 180, 270};
        return info;
    }

    std::vector<MMachAxisInfo> m_axes{
        axis("x", MMACH_AXIS_BOUNDED, -100, 100), axis("y", MMACH_AXIS_BOUNDED, -50, 50),
        axis("z", MMACH_AXIS_BOUNDED, 0, 0),      axis("w", MMACH_AXIS_UNBOUNDED, 0, 300),
        axis("hc", MMACH_AXIS_INACTIVE, 0, 0),    resting()};
};

class RehearsalTest : public ::testing::Test {
protected:
    // What there is against it; "?" in front of what can't be known.
    std::vector<std::string> texts() {
        std::vector<std::string> result;
        for (const Remark& remark : rehearsal.take_remarks())
            result.push_back((remark.is_wrong ? "" : "? ") + remark.text);
        return result;
    }
    std::vector<std::string> move(const AxisTargetMap& map) {
        EXPECT_EQ(rehearsal.NewMMachMoveCommand(&channel, targets(map)), nullptr);
        return texts();
    }

    QuietChannel channel{0};
    HostNotifier notifier;
    AxesMachine machine{channel, notifier};
    Rehearsal rehearsal{machine};
};

using Texts = std::vector<std::string>;

TEST_F(RehearsalTest, AGoodMoveHasNoRemarks) {
    EXPECT_EQ(move({{"x", {100.0}}, {"y", {-50.0}}}), Texts{});
    EXPECT_EQ(move({{"z", {1e6}}}), Texts{});
}

TEST_F(RehearsalTest, AxesMustBeThereInUseAndDriven) {
    EXPECT_EQ(move({{"q", {1.0}}}), Texts{"this machine has no axis 'q'"});
    EXPECT_EQ(move({{"hc", {1.0}}}), Texts{"axis 'hc' is out of use"});
    EXPECT_EQ(move({{"w", {1.0}}}), Texts{"axis 'w' has no drive"});
}

TEST_F(RehearsalTest, TargetsStayWithinTheTravel) {
    EXPECT_EQ(move({{"x", {100.1}}}), Texts{"x = 100.1 is beyond its travel from -100 to 100"});
    EXPECT_EQ(move({{"x", {std::numeric_limits<double>::max()}}}), Texts{});
    EXPECT_EQ(move({{"x", {0.5, true}}}), Texts{"x = 100.5 is beyond its travel from -100 to 100"});
    EXPECT_EQ(move({{"ka", {45.0}}}), Texts{"ka can't rest at 45"});
    EXPECT_EQ(move({{"ka", {90.0}}}), Texts{});
}

TEST_F(RehearsalTest, RelativeTargetsCountFromWhereTheLinesBeforeLeadTo) {
    EXPECT_EQ(move({{"y", {30.0, true}}}), Texts{});  // from 10, where it stands now
    EXPECT_EQ(move({{"y", {20.0, true}}}), Texts{"y = 60 is beyond its travel from -50 to 50"});
    rehearsal.NewMMachMovezeroCommand(&channel, targets({{"y", {0.0}}}));
    texts();
    EXPECT_EQ(move({{"y", {20.0, true}}}),
              Texts{"? whether y+=20 stays within its travel: that depends on where it stands by then"});
}

TEST_F(RehearsalTest, TheMachineSaysWhichAxesGoTogether) {
    EXPECT_EQ(move({{"x", {0.0}}, {"ka", {90.0}}}), Texts{"this machine can't move with ka, x together"});
}

TEST_F(RehearsalTest, AnArcIsHeldAgainstTheTravelAtItsOutermostPoints) {
    const auto circle = [&](double start, double sweep) {
        MMachCircle record{{0, 0, 5, 60, start, sweep, 0}, {}};
        rehearsal.NewMMachMovecircleCommand(&channel, record);
        return texts();
    };
    EXPECT_EQ(circle(0, 40), Texts{});
    EXPECT_EQ(circle(45, 90), Texts{"y = 60 is beyond its travel from -50 to 50"});
    EXPECT_EQ(circle(0, -45), Texts{});
    EXPECT_EQ(circle(-80, 1), Texts{"y = -59.0884652 is beyond its travel from -50 to 50"});
    EXPECT_EQ(circle(0, 1e12).size(), 1u);
}

TEST_F(RehearsalTest, ReferenceMarksThatNobodyLooksForAreToldOnce) {
    machine.initialized = false;
    EXPECT_EQ(move({{"x", {0.0}}}).size(), 1u);
    EXPECT_EQ(move({{"x", {0.0}}}), Texts{});
    Rehearsal second(machine);
    second.NewMMachInitCommand(&channel, {});
    second.NewMMachMoveCommand(&channel, targets({{"x", {0.0}}}));
    EXPECT_TRUE(second.take_remarks().empty());
}

TEST_F(RehearsalTest, ProbesThatLinesDefineAreKnownToThoseAfter) {
    const auto load = [&](long probe, long tip) {
        rehearsal.NewMMachProbeLoadCommand(&channel, probe, tip);
        return texts();
    };
    EXPECT_EQ(load(1, 1), Texts{});
    EXPECT_EQ(load(1, 0), Texts{});
    EXPECT_EQ(load(7, 2), Texts{"this machine has no probe 7 with tip 2"});
    rehearsal.NewMMachProbeDefineCommand(&channel, 7, 2, {});
    EXPECT_EQ(load(7, 2), Texts{});
    rehearsal.NewMMachProbeDeleteCommand(&channel, 7, 2);
    EXPECT_EQ(load(7, 2), Texts{"this machine has no probe 7 with tip 2"});
    rehearsal.NewMMachProbesystemUnloadCommand(&channel);
    EXPECT_EQ(load(8, 1), Texts{"? whether there is a probe 8 with tip 1: the probe system changes before"});
}

TEST_F(RehearsalTest, ValuesThatStandInNoListAreAskedFor) {
    rehearsal.NewMMachGetCommand(&channel, {"speed", "x", "velocity"});
    EXPECT_EQ(texts(), Texts{"this machine has no axis or value 'velocity'"});
}

TEST_F(RehearsalTest, ACommandThatTheMachineLacksIsToldAndNotAsked) {
    bool asked = false;
    rehearsal.examine({.name = "move", .class_name = "MMachMoveCommand", .make = [&](MOutputChannel*) {
                           asked = true;
                           return nullptr;
                       }});
    EXPECT_EQ(texts(), Texts{"move: this machine has no such command"});
    EXPECT_FALSE(asked);
}

}  // namespace
