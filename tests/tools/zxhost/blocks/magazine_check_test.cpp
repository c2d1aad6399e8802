// The place of the first fault in a magazine file; the database has the last word.
#include "magazine_check.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "exit_status.h"
#include "fake_machine.h"
#include "mmachmagazinedb.h"
#include "notifier.h"
#include "open_machine.h"
#include "temporary_directory.h"

namespace {

using namespace zxhost;

class MagazinePlayer : public FakeMachine {
public:
    using FakeMachine::FakeMachine;
    bool IsProbesystemDefined(const std::string& name) override { return name == "p" || name == "a_b"; }
    bool IsProbesystemIdDefined(const std::string& name, long id) override {
        return IsProbesystemDefined(name) && (id == 1 || id == 2);
    }
};

std::string slot(const std::string& name) { return "[" + name + "]\nload.program=l\nunload.program=u\n"; }

class MagazineCheckTest : public ::testing::Test {
protected:
    MagazineVerdict check(const std::string& content) {
        return check_magazine(directory.file("m.ini", content), machine);
    }
    // "LINE: text"; "good" without a fault.
    std::string fault(const std::string& content) {
        const MagazineVerdict verdict = check(content);
        return verdict.fault ? std::to_string(verdict.fault->line) + ": " + verdict.fault->text : "good";
    }
    bool database_takes(const std::string& content) {
        return MMachMagazineDB(&machine, directory.file("m.ini", content)).Open();
    }

    TemporaryDirectory directory;
    QuietChannel channel{0};
    HostNotifier notifier;
    MagazinePlayer machine{channel, notifier};
};

TEST_F(MagazineCheckTest, AGoodFileHasSlotsAndNoFault) {
    const MagazineVerdict verdict =
        check("# head\n" + slot("p_1_slot1") + slot("a_b_2_slot1") + "[HISTORY]\nx=1\n" + slot("p_2_slot1"));
    EXPECT_FALSE(verdict.fault);
    EXPECT_EQ(verdict.slots, 3u);
    EXPECT_TRUE(verdict.remarks.empty());
    EXPECT_EQ(fault(""), "good");
    EXPECT_EQ(fault("[HISTORY]\n"), "good");
}

TEST_F(MagazineCheckTest, TheFirstFaultOfTheFileIsNamedWithItsLine) {
    const std::string good = slot("p_1_slot1");
    EXPECT_EQ(fault(good + slot("history")),
              "4: [history]: the name of a section is PROBESYSTEM_ID_slotNUMBER");
    EXPECT_EQ(fault(good + slot("p_slot1")).substr(0, 13), "4: [p_slot1]:");
    EXPECT_EQ(fault(good + slot("q_1_slot1")), "4: [q_1_slot1]: this machine has no probe system 'q'");
    EXPECT_EQ(fault(good + slot("p_3_slot1")),
              "4: [p_3_slot1]: this machine has no probe system 'p' with id 3");
    EXPECT_EQ(fault(good + "\n\n[p_1_slot2]\nunload.program=u\n"), "6: [p_1_slot2]: load.program is missing");
    EXPECT_EQ(fault("[p_1_slot2]\nload.program=u\n" + good), "1: [p_1_slot2]: unload.program is missing");
    EXPECT_EQ(fault(good + slot("p_01_slot1")), "4: [p_01_slot1]: this slot stands in line 1 already");
    EXPECT_EQ(fault(slot("z") + slot("a")).substr(0, 2), "1:");
}

TEST_F(MagazineCheckTest, ALineThatIsNoIniLineIsAFaultToo) {
    EXPECT_EQ(fault(slot("p_1_slot1") + "nothing\n").substr(0, 2), "4:");
    const std::string twice = fault(slot("p_1_slot1") + slot("p_1_slot2") + slot("p_1_slot1"));
    EXPECT_EQ(twice.substr(0, 2), "7:");
    EXPECT_NE(twice.find("first in line 1"), std::string::npos) << twice;
    EXPECT_EQ(fault(slot("q_1_slot1") + slot("p_1_slot2") + "nothing\n").substr(0, 2), "1:");
    EXPECT_EQ(fault("[p_1_slot1]\nnothing\nload.program=l\nunload.program=u\n").substr(0, 2), "2:");
}

TEST_F(MagazineCheckTest, SlotsThatAChangeWouldNameInAnotherWayAreRemarkedOn) {
    const MagazineVerdict verdict =
        check(slot("p_01_slot1") + slot("p_1_slot2") + slot("p_2_slot3x") + slot("p_2_slot04"));
    EXPECT_FALSE(verdict.fault);
    ASSERT_EQ(verdict.remarks.size(), 3u);
    EXPECT_EQ(verdict.remarks[0].line, 1u);
    EXPECT_NE(verdict.remarks[0].text.find("[p_1_slot1]"), std::string::npos);
    EXPECT_EQ(verdict.remarks[1].line, 7u);
    EXPECT_EQ(verdict.remarks[2].line, 10u);
}

TEST_F(MagazineCheckTest, WhatCanNotBeReadIsNotJudged) {
    EXPECT_THROW(check_magazine(directory.path("none"), machine), HostError);
    EXPECT_THROW(check_magazine(directory.path(), machine), HostError);
}

RC_GTEST_FIXTURE_PROP(MagazineCheckTest, FindsAFaultWhereverTheDatabaseRefuses, ()) {
    const auto lines =
        *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(std::vector<std::string>{
            "[p_1_slot1]", "[p_01_slot1]", "[p_1_slot2]", "[a_b_2_slot1]", "[q_1_slot1]", "[HISTORY]", "[x]",
            "load.program=l", "load.program=l", "unload.program=u", "unload.program=u", "probe=7", "nothing",
            "# c", "", "change_to_2.program=c", "change_to_2"}));
    std::string content;
    for (const std::string& line : lines) content += line + "\n";
    RC_ASSERT(database_takes(content) == !check(content).fault.has_value());
}

}  // namespace
