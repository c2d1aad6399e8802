#include "faults/faultplan.h"

#include <gtest/gtest.h>

namespace zendrix::sim {
namespace {

FaultPlan plan(std::initializer_list<const char*> faults) {
    FaultPlan result;
    for (const char* fault : faults) result.add(fault);
    return result;
}

// At which of the first `count` points something is planned.
std::vector<int> at_points(FaultPlan faults, int count) {
    std::vector<int> result;
    for (int point = 1; point <= count; ++point) {
        if (faults.count_point() && !faults.at_point().empty()) result.push_back(point);
    }
    return result;
}

TEST(FaultPlan, OnceAtItsPlace) {
    FaultPlan faults = plan({"close@request:3", "slow=50@connect:1"});
    EXPECT_TRUE(faults.count(Place::request).empty());
    EXPECT_TRUE(faults.count(Place::request).empty());
    ASSERT_EQ(faults.count(Place::request).size(), 1u);
    EXPECT_TRUE(faults.count(Place::request).empty());
    const std::vector<PlannedFault> connect = faults.count(Place::connect);
    ASSERT_EQ(connect.size(), 1u);
    EXPECT_EQ(connect[0].fault, Fault::slow);
    EXPECT_EQ(connect[0].value, 50);
    EXPECT_TRUE(faults.count(Place::connect).empty());
}

TEST(FaultPlan, AgainAndAgain) {
    EXPECT_EQ(at_points(plan({"gap@point:3+4"}), 15), (std::vector{3, 7, 11, 15}));
    EXPECT_EQ(at_points(plan({"gap@point:2", "double@point:5+5", "slow=1@point:2"}), 12),
              (std::vector{2, 5, 10}));
    EXPECT_EQ(at_points(plan({"gap@request:2"}), 12), std::vector<int>{});
    EXPECT_EQ(at_points(plan({"gap@point:1+1"}), 3), (std::vector{1, 2, 3}));
}

TEST(FaultPlan, WordsOfARequestAreAPlace) {
    FaultPlan faults = plan({"refuse@keypad list:2+2", "close@ping:1"});
    std::vector<int> refused;
    for (int request = 1; request <= 5; ++request) {
        if (!faults.count(Place::words, "keypad list").empty()) refused.push_back(request);
    }
    EXPECT_EQ(refused, (std::vector{2, 4}));
    EXPECT_TRUE(faults.count(Place::request).empty());
    EXPECT_TRUE(faults.count(Place::words, "get").empty());
    ASSERT_EQ(faults.count(Place::words, "ping").size(), 1u);
    EXPECT_TRUE(faults.count(Place::words, "ping").empty());
}

TEST(FaultPlan, CountsFromWhenItWasPlanned) {
    FaultPlan faults;
    for (int request = 0; request < 10; ++request) EXPECT_TRUE(faults.count(Place::request).empty());
    faults.add("gap@request:2");
    EXPECT_TRUE(faults.count(Place::request).empty());
    EXPECT_EQ(faults.count(Place::request).size(), 1u);
    EXPECT_TRUE(faults.count(Place::request).empty());
}

TEST(FaultPlan, SaysWhatIsWrong) {
    const struct {
        const char* text;
        const char* complaint;
    } rows[] = {
        {"", "fault \"\" is not of the form NAME@PLACE:N"},
        {"close", "fault \"close\" is not of the form NAME@PLACE:N"},
        {"close@request", "fault \"close@request\" is not of the form NAME@PLACE:N"},
        {"close@request:", "fault \"close@request:\" is not of the form NAME@PLACE:N"},
        {"cloze@request:1",
         "fault \"cloze@request:1\": unknown fault \"cloze\"; there are close reset silent half-line garbage "
         "long-line unknown-id early-ready gap double slow refuse cut capabilities emergency "
         "short unquoted wrong-base64"},
        {"close@line:1",
         "fault \"close@line:1\": unknown place \"line\"; there are connect request point record block-line"},
        {"close@request:0", "fault \"close@request:0\": the count must be a whole number from 1 on"},
        {"close@request:x", "fault \"close@request:x\": the count must be a whole number from 1 on"},
        {"close@request:1+0", "fault \"close@request:1+0\": the interval must be a whole number from 1 on"},
        {"slow=x@request:1", "fault \"slow=x@request:1\": the value must be a whole number from 1 on"},
        {"slow@request:1", "fault \"slow@request:1\": a value in ms belongs to slow, as in slow=50@..."},
        {"refuse@point:1", "fault \"refuse@point:1\": only a request can be refused"},
        {"cut@request:1", "fault \"cut@request:1\": only a point or a record can be cut"},
        {"short@request:1", "fault \"short@request:1\": only a line of a block can be so"},
        {"unquoted@receive:1", "fault \"unquoted@receive:1\": only a line of a block can be so"},
        {"wrong-base64@point:1", "fault \"wrong-base64@point:1\": only a line of a block can be so"},
        {"close=5@request:1",
         "fault \"close=5@request:1\": a value in ms belongs to slow, as in slow=50@..."},
    };
    for (const auto& row : rows) {
        try {
            plan({row.text});
            ADD_FAILURE() << row.text;
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), row.complaint);
        }
    }
}

}  // namespace
}  // namespace zendrix::sim
