// The bridge of scan points from the client's thread to the host's.
#include <functional>
#include <thread>

#include "command_fixture.h"
#include "fake_clock.h"

namespace {

using Point = std::vector<double>;

class ScanCommandsTest : public CommandTest {
protected:
    MMachScanCommand* create_scan() {
        return create(&MMachAbstract::NewMMachScanCommand, MMachAxisTargets());
    }
    static std::vector<Point> drain(MMachScanCommand* scan) {
        std::vector<Point> points;
        for (Point point; scan->GetNextScanPoint(point);) points.push_back(point);
        return points;
    }

    FakeClock m_clock;  // in milliseconds
};

TEST_F(ScanCommandsTest, PointsComeOutInTheOrderTheyCameIn) {
    auto* scan = create_scan();
    script().fire_scan({1, 2, 3, 4});
    script().fire_scan({5, 6, 7, 8});
    EXPECT_EQ(drain(scan), (std::vector<Point>{{1, 2, 3, 4}, {5, 6, 7, 8}}));
    EXPECT_EQ(drain(scan), std::vector<Point>());
}

TEST_F(ScanCommandsTest, WithoutAPointTheHostsVectorStaysAsItWas) {
    auto* scan = create_scan();
    Point point{9, 9};
    EXPECT_FALSE(scan->GetNextScanPoint(point));
    EXPECT_EQ(point, (Point{9, 9}));
}

TEST_F(ScanCommandsTest, AnEmptyPointIsAPoint) {
    auto* scan = create_scan();
    script().fire_scan({});
    Point point{9, 9};
    EXPECT_TRUE(scan->GetNextScanPoint(point));
    EXPECT_EQ(point, Point());
    EXPECT_FALSE(scan->GetNextScanPoint(point));
}

TEST_F(ScanCommandsTest, ACountThatChangesIsKeptAsItComes) {
    auto* scan = create_scan();
    const std::vector<Point> points{{1, 2, 3}, {4}, {}, {5, 6, 7, 8, 9}, {10, 11}};
    for (const Point& point : points) script().fire_scan(point);
    EXPECT_EQ(drain(scan), points);
}

TEST_F(ScanCommandsTest, AVectorThatTheHostHandedInDoesNotShineThrough) {
    auto* scan = create_scan();
    Point point(100, 7.0);
    for (double i = 0; i < 10; ++i) {
        script().fire_scan({i});
        script().fire_scan({i, i});
        EXPECT_TRUE(scan->GetNextScanPoint(point));
        EXPECT_EQ(point, Point{i});
        EXPECT_TRUE(scan->GetNextScanPoint(point));
        EXPECT_EQ(point, (Point{i, i}));
    }
}

TEST_F(ScanCommandsTest, TheMemoryThatTheHostHandsInIsUsedAgain) {
    auto* scan = create_scan();
    Point point;
    point.reserve(16);
    const double* memory = point.data();
    script().fire_scan({1, 2});
    EXPECT_TRUE(scan->GetNextScanPoint(point));
    EXPECT_NE(point.data(), memory);
    script().fire_scan({3, 4});
    EXPECT_TRUE(scan->GetNextScanPoint(point));
    EXPECT_EQ(point.data(), memory);
    EXPECT_EQ(point, (Point{3, 4}));
}

TEST_F(ScanCommandsTest, LargeVectorsThatTheHostHandsInAreNotHoarded) {
    auto* scan = create_scan();
    Point point;
    point.reserve(100000);
    const double* memory = point.data();
    script().fire_scan({1});
    EXPECT_TRUE(scan->GetNextScanPoint(point));
    script().fire_scan({2});
    EXPECT_TRUE(scan->GetNextScanPoint(point));
    EXPECT_NE(point.data(), memory);
    EXPECT_LT(point.capacity(), 1000u);
}

TEST_F(ScanCommandsTest, PointsAMillisecondApartWakeTheHostOncePerTen) {
    auto* scan = create_scan();
    for (int i = 1; i <= 100; ++i) {
        m_clock.m_counter += 1;
        script().fire_scan({static_cast<double>(i)});
        EXPECT_EQ(m_notifier.m_count, i / 10);
    }
    EXPECT_EQ(drain(scan).size(), 100u);
}

TEST_F(ScanCommandsTest, TheFirstPointWakesTheHostIfTenMillisecondsHavePassed) {
    create_scan();
    m_clock.m_counter += 10;
    script().fire_scan({1});
    EXPECT_EQ(m_notifier.m_count, 1);
    m_clock.m_counter += 9;
    script().fire_scan({2});
    EXPECT_EQ(m_notifier.m_count, 1);
}

TEST_F(ScanCommandsTest, TheLastPointsAreFoundThroughTheCompletionsWakeUp) {
    auto* scan = create_scan();
    m_clock.m_counter += 10;
    script().fire_scan({1});
    script().fire_scan({2});
    script().fire_scan({3});
    EXPECT_EQ(m_notifier.m_count, 1);
    script().fire_complete(script().last_id());
    EXPECT_EQ(m_notifier.m_count, 2);
    EXPECT_TRUE(scan->IsDone());
    EXPECT_EQ(drain(scan).size(), 3u);
}

TEST_F(ScanCommandsTest, PointsAfterTheEndAreQueuedToo) {
    auto* scan = create_scan();
    script().fire_complete(script().last_id());
    EXPECT_TRUE(scan->IsDone());
    EXPECT_TRUE(script().fire_scan({1}));
    EXPECT_EQ(drain(scan), std::vector<Point>{{1}});
}

TEST_F(ScanCommandsTest, AFailedWakeUpIsRecordedAndTriedAgainInTenMilliseconds) {
    auto* scan = create_scan();
    m_notifier.m_answer = false;
    m_clock.m_counter += 10;
    script().fire_scan({1});
    m_clock.m_counter += 9;
    script().fire_scan({2});
    EXPECT_EQ(m_notifier.m_count, 1);
    m_clock.m_counter += 1;
    script().fire_scan({3});
    EXPECT_EQ(m_notifier.m_count, 2);
    const std::string text = "M2ZendrixGenericScanCommand::scan_callback(): Notify() failed";
    EXPECT_EQ(recording::error_trace(), (Texts{text, text}));
    EXPECT_EQ(drain(scan).size(), 3u);
}

// Drains its scan from inside the wake-up.
class DrainingNotifier : public MMachNotifier {
public:
    int HasNotification() override { return 0; }
    bool Notify() override {
        EXPECT_EQ(recording::open_contexts(), 1u);
        Point point;
        while (m_scan->GetNextScanPoint(point)) ++m_count;
        return true;
    }
    MMachScanCommand* m_scan = nullptr;
    int m_count = 0;
};

TEST_F(ScanCommandsTest, TheHostMayDrainFromWithinTheWakeUp) {
    DrainingNotifier notifier;
    m_driver = std::make_unique<ConnectedDriver>(&m_driverChannel, &notifier);
    notifier.m_scan = create_scan();
    m_clock.m_counter += 10;
    script().fire_scan({1});
    EXPECT_EQ(notifier.m_count, 1);
    m_command.reset();
    m_driver.reset();
}

TEST_F(ScanCommandsTest, AScanThatCouldNotStartStillHoldsItsPlace) {
    script().answer_false("GetMachine");
    auto* scan = create_scan();
    m_log = {"ZX_LockMachine() machine failed, can't start the command"};
    EXPECT_TRUE(scan->IsDone());
    EXPECT_EQ(drain(scan), std::vector<Point>());
    EXPECT_NE(script().slots().scan.first, nullptr);
    m_command.reset();
    EXPECT_EQ(script().slots().scan.first, nullptr);
    EXPECT_FALSE(script().fire_scan({1}));
}

TEST_F(ScanCommandsTest, WhatNobodyTookGoesWithTheCommand) {
    create_scan();
    for (int i = 0; i < 10000; ++i) script().fire_scan({1, 2, 3, 4});
    m_command.reset();
}

TEST_F(ScanCommandsTest, EveryScanningCommandBringsPoints) {
    const auto bring = [this](auto factory, const auto& argument) {
        auto* scan = create(factory, argument);
        script().fire_scan({1, 2});
        Point point;
        EXPECT_TRUE(scan->GetNextScanPoint(point));
        EXPECT_EQ(point, (Point{1, 2}));
        EXPECT_FALSE(scan->GetNextScanPoint(point));
        m_command.reset();
    };
    bring(&MMachAbstract::NewMMachScanCommand, MMachAxisTargets());
    bring(&MMachAbstract::NewMMachScanpointCommand, MMachAxisTargets());
    bring(&MMachAbstract::NewMMachScancircleCommand, MMachCircle());
    bring(&MMachAbstract::NewMMachScanconeCommand, MMachCone());
    bring(&MMachAbstract::NewMMachScanpolyCommand, std::vector<AxisTargetMap>());
}

TEST_F(ScanCommandsTest, ScandataAndScanbaseLeaveTheScanCallbackAlone) {
    create(&MMachAbstract::NewMMachScandataCommand, Texts{"x"});
    EXPECT_EQ(script().slots().scan.first, nullptr);
    create(&MMachAbstract::NewMMachScanbaseCommand, AxisSet{"x"});
    EXPECT_EQ(script().slots().scan.first, nullptr);
    EXPECT_EQ(script().calls_of("SetScanCallback"), Texts());
}

TEST_F(ScanCommandsTest, PointsArriveOnAnotherThreadWhileTheHostDrains) {
    auto* scan = create_scan();
    constexpr int count = 20000;
    std::thread client([this] {
        for (int i = 0; i < count; ++i) {
            if (i % 100 == 0) m_clock.m_counter += 10;
            script().fire_scan({static_cast<double>(i), 0.5, 1.5, 2.5});
        }
        script().fire_complete(script().last_id());
    });
    int next = 0;
    Point point;
    const auto take_all = [&] {
        for (; scan->GetNextScanPoint(point); ++next)
            ASSERT_EQ(point, (Point{static_cast<double>(next), 0.5, 1.5, 2.5}));
    };
    while (!scan->IsDone() && !HasFatalFailure()) take_all();
    client.join();
    take_all();
    EXPECT_EQ(next, count);
    EXPECT_EQ(m_notifier.m_count, count / 100 + 1);
}

}  // namespace
