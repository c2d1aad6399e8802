// Magazine files that are none, by the file and as text that is sent.
#include "magazine_fixture.h"

namespace {

using namespace std::string_literals;

struct Fault {
    std::string content;
    Texts reports;  // of the analysis, innermost first
};

const std::string analysis = "MMachMagazineDB::analyse_inifile(): ";
const std::string programs = "load.program=a\nunload.program=b\n";
const std::string too_long(70, 'x');

Fault misnamed(const std::string& section, const std::string& why) {
    return {"[" + section + "]\n" + programs,
            {"split_section_name(): " + why + section.substr(0, 60),
             analysis + "split_section_name(\"" + section.substr(0, 50) + "\") failed"}};
}

std::vector<Fault> faults() {
    const std::string unparsed = "could not parse '%u_slot%u' in ";
    return {
        misnamed("history", "no '_' found in "),
        misnamed("", "no '_' found in "),
        misnamed(too_long, "no '_' found in "),
        misnamed("1_slot2", "no second '_' found in "),
        misnamed("_3", unparsed),
        misnamed("p_x_slot1", unparsed),
        misnamed("p_1_slotx", unparsed),
        misnamed("p_1_Slot1", unparsed),
        {"[q_1_slot1]\n" + programs, {analysis + "Probesystem \"q\" not defined"}},
        {"[" + too_long + "_1_slot1]\n" + programs,
         {analysis + "Probesystem \"" + too_long.substr(0, 50) + "\" not defined"}},
        {"[p_7_slot1]\n" + programs, {analysis + "Probesystem id 7 not defined for \"p\""}},
        {"[p_1_slot1]\n" + programs + "[p_01_slot1]\n" + programs,
         {analysis + "Slot 1 exists more than once for \"p\" 1"}},
        {"[p_1_slot1]\nunload.program=b\n",
         {analysis + "Entry load.program is missing in section \"p_1_slot1\""}},
        {"[p_1_slot1]\nload.program=a\n",
         {analysis + "Entry unload.program is missing in section \"p_1_slot1\""}},
    };
}

TEST_F(MagazineTest, AFileThatIsNoneStopsOpenAndIsLeftAsItIs) {
    for (Fault& fault : faults()) {
        open("[p_1_slot5]\n" + programs);
        write(fault.content);
        EXPECT_FALSE(m_magazine.Open());
        fault.reports.emplace_back("MMachMagazineDB::Open(): analyse_inifile() failed");
        EXPECT_EQ(fault.reports, trace_reports());
        EXPECT_TRUE(m_magazine.GetSlots("p", 1).empty());
        EXPECT_EQ(fault.content, content());
    }
}

TEST_F(MagazineTest, ATextThatIsNoneNeverReachesTheFile) {
    for (Fault& fault : faults()) {
        open("[p_1_slot5]\n" + programs);
        const std::string before = content();
        EXPECT_FALSE(m_magazine.Send(fault.content));
        fault.reports.emplace_back("MMachMagazineDB::Send(): analyse_inifile() failed");
        EXPECT_EQ(fault.reports, trace_reports());
        EXPECT_EQ((Slots{{5, 0}}), m_magazine.GetSlots("p", 1));
        EXPECT_EQ(before, content());
    }
}

TEST_F(MagazineTest, ATextThatIsNoIniFileNeverReachesTheFile) {
    open("[p_1_slot5]\n" + programs);
    EXPECT_FALSE(m_magazine.Send("[p_1_slot6]\n" + programs + "["));
    EXPECT_EQ("MMachMagazineDB::Send(): SetContentString() failed", last_report());
    EXPECT_EQ((Slots{{5, 0}}), m_magazine.GetSlots("p", 1));
    EXPECT_TRUE(m_magazine.SetSlot(5, 1));
    EXPECT_EQ(std::string::npos, content().find("slot6"));
}

TEST_F(MagazineTest, ADamagedFileKeepsTheOldIndexAndIsWrittenAnew) {
    open("[p_1_slot5]\n" + programs);
    write("[p_1_slot5]\n" + programs + "damage\n");
    EXPECT_FALSE(m_magazine.Open());
    EXPECT_EQ("MMachMagazineDB::Open(): inidata.Open(\"" + m_path.substr(0, 50) + "\") failed",
              last_report());
    EXPECT_EQ((Slots{{5, 0}}), m_magazine.GetSlots("p", 1));
    EXPECT_TRUE(m_magazine.SetSlot(5, 3));
    EXPECT_EQ("[p_1_slot5]\r\nload.program=a\r\nunload.program=b\r\nprobe=3\r\n", content());
}

TEST_F(MagazineTest, SendOverADamagedFileReportsThatItCannotGoBack) {
    write("damage");
    EXPECT_FALSE(m_magazine.Send("["));
    EXPECT_EQ("MMachMagazineDB::Send(): Open() failed", last_report());
    EXPECT_EQ("damage", content());
}

TEST_F(MagazineTest, AnEntryWhoseNameHoldsANulCannotBeRead) {
    write("[p_1_slot1]\n" + programs + "change_to_5\0.program=x\n"s);
    EXPECT_FALSE(m_magazine.Open());
    EXPECT_EQ((Texts{analysis + "GetStringEntry(\"p_1_slot1\", \"change_to_5\" failed",
                     "MMachMagazineDB::Open(): analyse_inifile() failed"}),
              trace_reports());
}

TEST_F(MagazineTest, ReportsNameTheirSource) {
    write("[history]\n");
    EXPECT_FALSE(m_magazine.Open());
    for (const recording::Place& place : recording::error_trace_places()) {
        EXPECT_EQ("zendrix/server/machine/src/mmachmagazinedb", place.source);
        EXPECT_GT(place.line, 0);
    }
    EXPECT_EQ(3U, trace_reports().size());
}

}  // namespace
