// What the magazine's database answers, and what it writes.
#include "mmachmagazinedb.h"

#include "magazine_fixture.h"

namespace {

TEST_F(MagazineTest, IsEmptyBeforeOpenAndWithoutAFile) {
    EXPECT_TRUE(m_magazine.GetSlots("", 0).empty());
    EXPECT_TRUE(m_magazine.Open());
    EXPECT_TRUE(m_magazine.GetSlots("", 0).empty());
    EXPECT_EQ(0U, m_magazine.GetSlotOfProbe(0));
    EXPECT_EQ("", m_magazine.GetLoadProgram(1));
    EXPECT_EQ("", m_magazine.GetChangeProgram(1, 2));
    EXPECT_EQ("", content());
}

TEST_F(MagazineTest, ReadsTheSlotsOfSeveralProbesystems) {
    open(slot("p_1_slot1", "probe=7\n") + slot("p_1_slot12", "probe = 8 tips\n") + slot("p_1_slot3") +
         slot("p_2_slot1", "probe=none\nother=1\n") + slot("abc_def_3_slot2x", "probe=-1\n") +
         "[HISTORY]\nlast=1\n");
    EXPECT_EQ((Slots{{1, 7}, {3, 0}, {12, 8}}), m_magazine.GetSlots("", 0));
    EXPECT_EQ((Slots{{1, 7}, {3, 0}, {12, 8}}), m_magazine.GetSlots("p", 1));
    EXPECT_EQ((Slots{{1, 0}}), m_magazine.GetSlots("p", 2));
    EXPECT_EQ((Slots{{2, 4294967295U}}), m_magazine.GetSlots("abc_def", 3));
    EXPECT_TRUE(m_magazine.GetSlots("p", 3).empty());
    EXPECT_TRUE(m_magazine.GetSlots("", 3).empty());
    EXPECT_TRUE(m_magazine.GetSlots("p", 0).empty());
}

TEST_F(MagazineTest, AnswersForTheActiveProbesystem) {
    open(slot("p_1_slot4", "probe=7\n") + slot("p_1_slot2", "probe=7\n") + slot("p_1_slot9") +
         slot("abc_def_3_slot5", "probe=1\n"));
    EXPECT_EQ(2U, m_magazine.GetSlotOfProbe(7));
    EXPECT_EQ(9U, m_magazine.GetSlotOfProbe(0));
    EXPECT_EQ(0U, m_magazine.GetSlotOfProbe(1));
    EXPECT_TRUE(m_magazine.IsSlotDefined(9));
    EXPECT_FALSE(m_magazine.IsSlotDefined(5));
    m_machine.m_active = "abc_def";
    m_machine.m_active_id = 3;
    EXPECT_EQ(5U, m_magazine.GetSlotOfProbe(1));
    EXPECT_TRUE(m_magazine.IsSlotDefined(5));
    EXPECT_EQ((Slots{{5, 1}}), m_magazine.GetSlots("", 0));
    m_machine.m_active_id = 4;
    EXPECT_EQ(0U, m_magazine.GetSlotOfProbe(1));
    EXPECT_FALSE(m_magazine.IsSlotDefined(5));
}

TEST_F(MagazineTest, AnEmptyNameWithAnIdIsAProbesystem) {
    open(slot("_3_slot1", "probe=5\n") + slot("p_1_slot1"));
    EXPECT_EQ((Slots{{1, 5}}), m_magazine.GetSlots("", 3));
}

struct Programs {
    const char* stored;
    const char* given;
};

TEST_F(MagazineTest, QuotesAroundAProgramAreTakenOff) {
    for (const Programs& program : {Programs{"\"a b\"", "a b"}, Programs{"a", "a"}, Programs{"\"", "\""},
                                    Programs{"\"\"", ""}, Programs{"", ""}, Programs{" \"a\"", " \"a\""},
                                    Programs{"\"\"a\"\"", "\"a\""}, Programs{"\"a", "\"a"}}) {
        const std::string stored = program.stored;
        open("[p_1_slot1]\nload.program=" + stored + "\nunload.program=" + stored +
             "\nchange_to_5.program=" + stored + "\n");
        EXPECT_EQ(program.given, m_magazine.GetLoadProgram(1));
        EXPECT_EQ(program.given, m_magazine.GetUnloadProgram(1));
        EXPECT_EQ(program.given, m_magazine.GetChangeProgram(1, 5));
        EXPECT_EQ("", m_magazine.GetLoadProgram(2));
        EXPECT_EQ("", m_magazine.GetUnloadProgram(2));
    }
}

TEST_F(MagazineTest, AChangeOfItsOwnNeedsNoTarget) {
    open(slot("p_1_slot1",
              "change_to_2.program=direct\nchange_to_5=short\nchange_to_x.program=none\n"
              "change_to_05.program=early\nxchange_to_6.program=none\n"));
    EXPECT_EQ("direct", m_magazine.GetChangeProgram(1, 2));
    EXPECT_EQ("short", m_magazine.GetChangeProgram(1, 5));
    EXPECT_EQ("", m_magazine.GetChangeProgram(1, 6));
    EXPECT_EQ("", m_magazine.GetChangeProgram(2, 1));
}

struct Joined {
    const char* unload;
    const char* load;
    const char* text;
};

TEST_F(MagazineTest, AChangeIsUnloadingAndLoading) {
    for (const Joined& joined :
         {Joined{"\"a\"", "\"b\"", "a\";\"b"}, Joined{"a", "b", "a;b"}, Joined{"", "", ";"},
          Joined{"\"", "\"", ";"}, Joined{"a\"\"b", "\"\"", "a;b;\"\""}, Joined{"\"\"", "b", ";;b"},
          Joined{"\"a", "b\"", "a;b"}, Joined{"\"\"\"", "\"", ";;"}}) {
        open("[p_1_slot1]\nload.program=x\nunload.program=" + std::string(joined.unload) +
             "\n[p_1_slot2]\nunload.program=y\nload.program=" + joined.load + "\n");
        EXPECT_EQ(joined.text, m_magazine.GetChangeProgram(1, 2)) << joined.unload << joined.load;
        EXPECT_EQ("", m_magazine.GetChangeProgram(1, 3));
        EXPECT_EQ("", m_magazine.GetChangeProgram(3, 1));
    }
}

TEST_F(MagazineTest, SetSlotWritesTheProbeAndKeepsTheRest) {
    open("# head\n" + slot("p_1_slot2", "probe = 3\nother= 1 \n; a comment\n") + "[HISTORY]\nx=1\n");
    EXPECT_TRUE(m_magazine.SetSlot(2, 7));
    EXPECT_EQ((Slots{{2, 7}}), m_magazine.GetSlots("", 0));
    EXPECT_EQ(
        "# head\r\n[HISTORY]\r\nx=1\r\n[p_1_slot2]\r\nload.program=\"load\"\r\nunload.program=\"unload\"\r\n"
        "probe =7\r\nother= 1 \r\n; a comment\r\n",
        content());
}

TEST_F(MagazineTest, ProbesAreWrittenAsSignedNumbersAndComeBack) {
    open(slot("p_1_slot1"));
    EXPECT_TRUE(m_magazine.SetSlot(1, 4294967295U));
    EXPECT_NE(std::string::npos, content().find("probe=-1\r\n"));
    EXPECT_TRUE(m_magazine.Open());
    EXPECT_EQ(1U, m_magazine.GetSlotOfProbe(4294967295U));
}

TEST_F(MagazineTest, SetSlotMakesNoSlots) {
    open(slot("p_1_slot1"));
    const std::string before = content();
    EXPECT_FALSE(m_magazine.SetSlot(2, 7));
    EXPECT_EQ(Texts{"MMachMagazineDB::SetSlot(): slot number 2 not found"}, trace_reports());
    m_machine.m_active_id = 2;
    EXPECT_FALSE(m_magazine.SetSlot(1, 7));
    EXPECT_EQ(Texts{"MMachMagazineDB::SetSlot(): probesystem p_2 not found"}, trace_reports());
    EXPECT_EQ(before, content());
}

TEST_F(MagazineTest, ASectionThatIsNamedInAnotherWayGetsASecondOne) {
    open(slot("p_01_slot1"));
    EXPECT_TRUE(m_magazine.SetSlot(1, 5));
    EXPECT_EQ((Slots{{1, 5}}), m_magazine.GetSlots("p", 1));
    EXPECT_NE(std::string::npos, content().find("[p_01_slot1]\r\n"));
    EXPECT_NE(std::string::npos, content().find("[p_1_slot1]\r\nprobe=5\r\n"));
}

TEST_F(MagazineTest, DeleteProbeEmptiesTheFirstSlotThatHoldsIt) {
    open(slot("p_1_slot2", "probe=7\n") + slot("p_1_slot10", "probe=7\n") + slot("p_2_slot1", "probe=7\n"));
    EXPECT_TRUE(m_magazine.DeleteProbe(7));
    EXPECT_EQ((Slots{{2, 0}, {10, 7}}), m_magazine.GetSlots("", 0));
    EXPECT_EQ((Slots{{1, 7}}), m_magazine.GetSlots("p", 2));
    EXPECT_TRUE(m_magazine.Open());
    EXPECT_EQ((Slots{{2, 0}, {10, 7}}), m_magazine.GetSlots("", 0));
}

TEST_F(MagazineTest, DeletingProbeZeroWritesTheLowestEmptySlot) {
    open(slot("p_1_slot2", "probe=7\n") + slot("p_1_slot3"));
    EXPECT_TRUE(m_magazine.DeleteProbe(0));
    EXPECT_NE(std::string::npos, content().find("[p_1_slot3]\r\nload.program=\"load\"\r\n"
                                                "unload.program=\"unload\"\r\nprobe=0\r\n"));
}

TEST_F(MagazineTest, DeletingWhatIsNotThereWritesNothing) {
    open(slot("p_1_slot2", "probe=7\n"));
    const std::string before = content();
    EXPECT_TRUE(m_magazine.DeleteProbe(8));
    EXPECT_TRUE(m_magazine.DeleteProbesystem("p", 2));
    m_machine.m_active_id = 2;
    EXPECT_TRUE(m_magazine.DeleteProbe(7));
    EXPECT_EQ(before, content());
}

TEST_F(MagazineTest, DeleteProbesystemRemovesItsSlotsAlone) {
    open(slot("p_1_slot2") + slot("p_2_slot1") + slot("p_1_slot3") + "[HISTORY]\n");
    EXPECT_TRUE(m_magazine.DeleteProbesystem("p", 1));
    EXPECT_TRUE(m_magazine.GetSlots("p", 1).empty());
    EXPECT_EQ("[HISTORY]\r\n[p_2_slot1]\r\nload.program=\"load\"\r\nunload.program=\"unload\"\r\n",
              content());
}

TEST_F(MagazineTest, SendReplacesTheFile) {
    open(slot("p_1_slot2"));
    EXPECT_TRUE(m_magazine.Send(slot("p_2_slot1", "\nprobe=4\n")));
    EXPECT_TRUE(m_magazine.GetSlots("p", 1).empty());
    EXPECT_EQ((Slots{{1, 4}}), m_magazine.GetSlots("p", 2));
    EXPECT_EQ("[p_2_slot1]\r\nload.program=\"load\"\r\nunload.program=\"unload\"\r\n\r\nprobe=4\r\n",
              content());
}

TEST_F(MagazineTest, LongNamesAreCutInKeyAndSectionEachInItsWay) {
    const std::string name(95, 'n');
    m_machine.m_defined[name] = {1};
    m_machine.m_active = name;
    open(slot(name + "_1_slot1"));
    EXPECT_TRUE(m_magazine.SetSlot(1, 5));
    EXPECT_NE(std::string::npos, content().find("[" + std::string(90, 'n') + "_1_slot1]\r\nprobe=5\r\n"));
    EXPECT_EQ((Slots{{1, 5}}), m_magazine.GetSlots(name, 1));
    const std::string longer(101, 'm');
    m_machine.m_defined[longer] = {1};
    open(slot(longer + "_1_slot1", "probe=6\n"));
    EXPECT_EQ((Slots{{1, 6}}), m_magazine.GetSlots(std::string(100, 'm'), 1));
}

}  // namespace
