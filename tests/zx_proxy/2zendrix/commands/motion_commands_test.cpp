// What motions and scans make of their arguments.
#include <cmath>
#include <limits>

#include "command_fixture.h"

namespace {

constexpr double highest = std::numeric_limits<double>::max();
constexpr double lowest = std::numeric_limits<double>::lowest();

class MotionCommandsTest : public CommandTest {
protected:
    // The flag that the last position list of an operation holds.
    static std::string flag_of(const std::string& operation) {
        const std::string call = script().calls_of(operation).back();
        return call.substr(call.find(" flag ") + 6, call.rfind(')') - call.find(" flag ") - 6);
    }
    std::string move_flag(double value, bool has_flag) {
        create(&MMachAbstract::NewMMachMoveCommand, one_target(value, has_flag));
        return flag_of("Move");
    }
    std::string movezero_flag(double value, bool has_flag) {
        create(&MMachAbstract::NewMMachMovezeroCommand, one_target(value, has_flag));
        return flag_of("MoveZero");
    }
    static MMachAxisTargets one_target(double value, bool has_flag) {
        MMachAxisTargets targets;
        targets.m_targets["x"] = {value, has_flag};
        return targets;
    }
};

TEST_F(MotionCommandsTest, AFlaggedMoveToAnEndOfTheRangeGoesToTheLimit) {
    EXPECT_EQ(move_flag(highest, true), "3");
    EXPECT_EQ(move_flag(lowest, true), "2");
    EXPECT_EQ(move_flag(-1.7976931348623157e308, true), "2");
    EXPECT_EQ(move_flag(std::nextafter(highest, 0.0), true), "0");
    EXPECT_EQ(move_flag(std::numeric_limits<double>::infinity(), true), "0");
    EXPECT_EQ(move_flag(std::numeric_limits<double>::quiet_NaN(), true), "0");
    EXPECT_EQ(move_flag(1.0, true), "0");
}

TEST_F(MotionCommandsTest, APlainMoveIsPlainWhateverItsValue) {
    EXPECT_EQ(move_flag(highest, false), "-1");
    EXPECT_EQ(move_flag(lowest, false), "-1");
    EXPECT_EQ(move_flag(1.0, false), "-1");
}

TEST_F(MotionCommandsTest, OnlyMoveKnowsTheLimits) {
    EXPECT_EQ(movezero_flag(highest, true), "0");
    EXPECT_EQ(movezero_flag(lowest, true), "0");
    EXPECT_EQ(movezero_flag(lowest, false), "-1");
    create(&MMachAbstract::NewMMachMovecircleCommand, MMachCircle{{}, one_target(highest, true)});
    EXPECT_EQ(flag_of("MoveCircle"), "0");
    create(&MMachAbstract::NewMMachMoveconeCommand, MMachCone{{}, one_target(lowest, true), {}});
    EXPECT_EQ(flag_of("MoveCone"), "0");
    create(&MMachAbstract::NewMMachScanCommand, one_target(highest, true));
    EXPECT_EQ(flag_of("Scan"), "0");
}

TEST_F(MotionCommandsTest, ACircleOrConeWithoutTargetsHasNoRecords) {
    create(&MMachAbstract::NewMMachMovecircleCommand, MMachCircle());
    EXPECT_EQ(script().calls_of("MoveCircle"), Texts{"MoveCircle(0, 0, 0, 0, 0, 0, 0, 0, null)"});
    create(&MMachAbstract::NewMMachMoveconeCommand, MMachCone());
    EXPECT_EQ(script().calls_of("MoveCone"), Texts{"MoveCone(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, null)"});
    create(&MMachAbstract::NewMMachScancircleCommand, MMachCircle());
    EXPECT_EQ(script().calls_of("ScanCircle"), Texts{"ScanCircle(0, 0, 0, 0, 0, 0, 0, 0, null)"});
    create(&MMachAbstract::NewMMachScanconeCommand, MMachCone());
    EXPECT_EQ(script().calls_of("ScanCone"), Texts{"ScanCone(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, null)"});
}

TEST_F(MotionCommandsTest, APolygonPointWithoutAxesStillHasItsSeparator) {
    create(&MMachAbstract::NewMMachMovepolyCommand, std::vector<AxisTargetMap>(2));
    EXPECT_EQ(script().calls_of("MovePoly"), Texts{"MovePoly(2, 2, =0 flag 0, =0 flag 0)"});
    create(&MMachAbstract::NewMMachScanpolyCommand, std::vector<AxisTargetMap>(1));
    EXPECT_EQ(script().calls_of("ScanPoly"), Texts{"ScanPoly(1, 1, =0 flag 0)"});
}

TEST_F(MotionCommandsTest, AnEmptyPolygonCountsNothing) {
    create(&MMachAbstract::NewMMachMovepolyCommand, std::vector<AxisTargetMap>());
    EXPECT_EQ(script().calls_of("MovePoly").front().substr(0, 14), "MovePoly(0, 0,");
}

TEST_F(MotionCommandsTest, AMoveWithoutTargetsIsSentAllTheSame) {
    create(&MMachAbstract::NewMMachMoveCommand, MMachAxisTargets());
    EXPECT_EQ(script().calls_of("Move").front().substr(0, 7), "Move(0,");
    EXPECT_FALSE(m_command->IsDone());
}

TEST_F(MotionCommandsTest, FurtherAxesAreForScansOnly) {
    MMachAxisTargets targets = one_target(1, false);
    targets.m_axes = {"z", "c"};
    create(&MMachAbstract::NewMMachMoveCommand, targets);
    EXPECT_EQ(script().calls_of("Move"), Texts{"Move(1, x=1 flag -1)"});
    create(&MMachAbstract::NewMMachScanCommand, targets);
    EXPECT_EQ(script().calls_of("Scan"), Texts{"Scan(3, x=1 flag -1, c flag 1, z flag 1)"});
    create(&MMachAbstract::NewMMachScanpointCommand, targets);
    EXPECT_EQ(script().calls_of("ScanPoint"), Texts{"ScanPoint(3, x=1 flag -1, c flag 1, z flag 1)"});
    create(&MMachAbstract::NewMMachScancircleCommand, MMachCircle{{}, targets});
    EXPECT_EQ(script().calls_of("ScanCircle"), Texts{"ScanCircle(0, 0, 0, 0, 0, 0, 0, 1, x=1 flag -1)"});
}

TEST_F(MotionCommandsTest, TheArgumentsAreKeptWhole) {
    MMachAxisTargets targets = one_target(1, true);
    targets.text1 = "one";
    targets.text2 = "two";
    targets.text3 = "three";
    targets.extra = 0xFFFFFFFFFFFFFFFF;
    const auto* cone = create(&MMachAbstract::NewMMachMoveconeCommand, MMachCone{{1}, targets, {8, 9}});
    EXPECT_EQ(cone->m_cone.axes.text1 + cone->m_cone.axes.text2 + cone->m_cone.axes.text3, "onetwothree");
    EXPECT_EQ(cone->m_cone.axes.extra, 0xFFFFFFFFFFFFFFFF);
    EXPECT_EQ(cone->m_cone.more[1], 9);
}

TEST_F(MotionCommandsTest, MovebaseIsDoneAtTheFirstPoll) {
    create(&MMachAbstract::NewMMachMovebaseCommand, AxisSet{"x"});
    script().fire_complete(12);
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(m_driver->finished(), 1u);
}

}  // namespace
