// Changes that fail: file and index stay together. This program's allocations fail on demand.
#include <cerrno>
#include <functional>
#include <new>

#include "faulty_files.h"
#include "magazine_fixture.h"

namespace {

bool next_fails = false;

struct Change {
    const char* operation;
    std::function<bool(MMachMagazineDB&)> run;
};

const Change changes[] = {
    {"SetSlot", [](MMachMagazineDB& magazine) { return magazine.SetSlot(2, 9); }},
    {"DeleteProbe", [](MMachMagazineDB& magazine) { return magazine.DeleteProbe(7); }},
    {"DeleteProbesystem", [](MMachMagazineDB& magazine) { return magazine.DeleteProbesystem("p", 1); }},
};

std::string save_failed(const std::string& operation) {
    return "MMachMagazineDB::" + operation + "(): inidata.Save() failed";
}

class MagazineSaveTest : public MagazineTest {
protected:
    void SetUp() override {
        MagazineTest::SetUp();
        open(m_content);
    }

    Slots slots_of_file() {
        MMachMagazineDB fresh(&m_machine, m_path);
        EXPECT_TRUE(fresh.Open());
        return fresh.GetSlots("p", 1);
    }

    const std::string m_content = slot("p_1_slot2", "probe=7\n") + slot("p_1_slot3", "probe=8\n");
    const Slots m_slots{{2, 7}, {3, 8}};
};

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (!next_fails) return ::operator new(size);
    next_fails = false;
    errno = ENOMEM;
    return nullptr;
}

namespace {

TEST_F(MagazineSaveTest, AFailedChangeIsReportedAndUndone) {
    for (const Change& change : changes) {
        FaultyFiles files;
        files.fail("rename", 1, EIO);
        EXPECT_FALSE(change.run(m_magazine));
        EXPECT_EQ(save_failed(change.operation), last_report());
        EXPECT_EQ(m_slots, m_magazine.GetSlots("p", 1));
        EXPECT_EQ(m_content, content());
    }
}

TEST_F(MagazineSaveTest, AFailedSendIsReportedAndUndone) {
    FaultyFiles files;
    files.fail("write", 1, ENOSPC);
    EXPECT_FALSE(m_magazine.Send(slot("p_1_slot5")));
    EXPECT_EQ("MMachMagazineDB::Send(): Save() failed", last_report());
    EXPECT_EQ(m_slots, m_magazine.GetSlots("p", 1));
    EXPECT_EQ(m_content, content());
}

TEST_F(MagazineSaveTest, WhicheverCallFailsFileAndIndexStayTogether) {
    for (const Fault fault : {Fault::fails, Fault::moves_half, Fault::moves_none}) {
        for (int nth = 1; nth <= 8; ++nth) {
            open(m_content);
            bool changed = false;
            {
                FaultyFiles files;
                files.spoil_call(nth, fault, EIO);
                changed = m_magazine.SetSlot(2, 9);
                EXPECT_EQ(0, files.open_handles());
            }
            EXPECT_EQ(changed ? (Slots{{2, 9}, {3, 8}}) : m_slots, slots_of_file()) << nth;
            EXPECT_EQ(slots_of_file(), m_magazine.GetSlots("p", 1)) << nth;
            EXPECT_EQ(changed, trace_reports().empty()) << nth;
        }
    }
}

TEST_F(MagazineSaveTest, AFailedSaveFindsWhatOthersWroteMeanwhile) {
    write(slot("p_1_slot6", "probe=1\n"));
    EXPECT_EQ(m_slots, m_magazine.GetSlots("p", 1));
    FaultyFiles files;
    files.fail("make_temporary", 1, EACCES);
    EXPECT_FALSE(m_magazine.SetSlot(2, 9));
    EXPECT_EQ(save_failed("SetSlot"), last_report());
    EXPECT_EQ((Slots{{6, 1}}), m_magazine.GetSlots("p", 1));
}

TEST_F(MagazineSaveTest, AFileThatWentAwayIsWrittenAnew) {
    std::filesystem::remove(m_path);
    EXPECT_TRUE(m_magazine.SetSlot(2, 9));
    EXPECT_EQ((Slots{{2, 9}, {3, 8}}), slots_of_file());
}

TEST_F(MagazineSaveTest, TheTraceTellsIfTheFileCannotBeReadBack) {
    FaultyFiles files;
    files.fail("rename", 1, EIO);
    files.on_fault([this] { write("[p_1_slot2]\ndamage\n"); });
    EXPECT_FALSE(m_magazine.SetSlot(2, 9));
    const Texts reports = trace_reports();
    ASSERT_GE(reports.size(), 5U);
    EXPECT_EQ(
        (Texts{"MMachMagazineDB::resync_inifile(): inidata.Reload() failed",
               "MMachMagazineDB::analyse_inifile(): Entry load.program is missing in section \"p_1_slot2\"",
               "MMachMagazineDB::resync_inifile(): analyse_inifile() failed"}),
        Texts(reports.end() - 3, reports.end()));
}

TEST_F(MagazineSaveTest, ASectionThatIsNotThereIsReportedAndTheRestGoes) {
    open(slot("p_01_slot1", "probe=4\n") + slot("p_1_slot2"));
    EXPECT_FALSE(m_magazine.DeleteProbesystem("p", 1));
    EXPECT_EQ((Texts{"MIniData::DeleteSection(): section \"p_1_slot1\" not found",
                     "MMachMagazineDB::DeleteProbesystem(): inidata.DeleteSection(p_1_slot1) failed"}),
              trace_reports());
    EXPECT_EQ((Slots{{1, 4}}), m_magazine.GetSlots("p", 1));
    EXPECT_EQ((Slots{{1, 4}}), slots_of_file());
}

TEST_F(MagazineSaveTest, AnEntryThatCannotBeMadeIsReportedAndUndone) {
    const std::string content = slot("p_01_slot1", "probe=4\n");
    open(content);
    next_fails = true;
    EXPECT_FALSE(m_magazine.SetSlot(1, 9));
    EXPECT_EQ("MMachMagazineDB::SetSlot(): inidata.SetLongEntry() failed", last_report());
    EXPECT_EQ((Slots{{1, 4}}), m_magazine.GetSlots("p", 1));
    EXPECT_EQ(content, this->content());
    next_fails = true;
    EXPECT_FALSE(m_magazine.DeleteProbe(4));
    EXPECT_EQ("MMachMagazineDB::DeleteProbe(): inidata.SetLongEntry(p_1_slot1,\"probe\") failed",
              last_report());
    EXPECT_EQ((Slots{{1, 4}}), m_magazine.GetSlots("p", 1));
}

TEST_F(MagazineSaveTest, TellsWhetherTheIndexIsThatOfTheFile) {
    MMachMagazineDB magazine(&m_machine, m_path);
    EXPECT_FALSE(magazine.IsFileRead());
    EXPECT_TRUE(magazine.Open());
    EXPECT_TRUE(magazine.IsFileRead());
    write("[p_1_slot2]\nno entry\n");
    EXPECT_FALSE(magazine.Open());
    EXPECT_FALSE(magazine.IsFileRead());
    EXPECT_FALSE(magazine.Send("[p_9_slot1]\n"));
    EXPECT_FALSE(magazine.IsFileRead());
    EXPECT_TRUE(magazine.Send(m_content));
    EXPECT_TRUE(magazine.IsFileRead());
    EXPECT_FALSE(magazine.SetSlot(9, 1));
    EXPECT_TRUE(magazine.IsFileRead());
    write(slot("p_7_slot2"));
    EXPECT_FALSE(magazine.Open());
    EXPECT_FALSE(magazine.IsFileRead());
    std::filesystem::remove(m_path);
    EXPECT_TRUE(magazine.Open());
    EXPECT_TRUE(magazine.IsFileRead());
    EXPECT_EQ("MMachMagazineDB::Open(): analyse_inifile() failed", last_report());
}

TEST_F(MagazineSaveTest, AFailedChangeThatIsReadBackLeavesTheIndexThatOfTheFile) {
    for (const Change& change : changes) {
        FaultyFiles files;
        files.fail("rename", 1, EIO);
        EXPECT_FALSE(change.run(m_magazine));
        EXPECT_TRUE(m_magazine.IsFileRead()) << change.operation;
        files.fail("rename", 1, EIO);
        files.on_fault([this] { write("[p_1_slot2]\ndamage\n"); });
        EXPECT_FALSE(change.run(m_magazine));
        EXPECT_FALSE(m_magazine.IsFileRead()) << change.operation;
        EXPECT_EQ("MMachMagazineDB::resync_inifile(): analyse_inifile() failed", last_report());
        open(m_content);
    }
}

}  // namespace
