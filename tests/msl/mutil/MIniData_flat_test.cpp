#include <cerrno>
#include <cstdlib>
#include <memory>

#include "MIniData.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class MIniDataFlatTest : public ReportsTest {
protected:
    TemporaryDirectory m_directory;
    const std::unique_ptr<MIniData, void (*)(MIniData*)> m_owner{MIniData_New(), MIniData_Delete};
    MIniData* const m_ini = m_owner.get();
};

std::string text_of(const MIniData* ini) {
    char* const text = MIniData_GetContentString(ini);
    const std::string copy = text;
    std::free(text);
    return copy;
}

TEST_F(MIniDataFlatTest, FilesAreOpenedChangedAndSaved) {
    const std::string path = m_directory.file("test.ini", "[s]\na=1\n");
    EXPECT_EQ(0, MIniData_IsOpen(m_ini));
    EXPECT_EQ(0, MIniData_Reload(m_ini));
    EXPECT_EQ(1, MIniData_Open(m_ini, path.c_str()));
    EXPECT_EQ(1, MIniData_IsOpen(m_ini));
    EXPECT_EQ(0, MIniData_IsNew(m_ini));
    EXPECT_EQ(1, MIniData_SetStringEntry(m_ini, "s", "b", "x"));
    EXPECT_EQ(1, MIniData_Save(m_ini));
    EXPECT_EQ("[s]\r\na=1\r\nb=x\r\n", m_directory.content("test.ini"));
    EXPECT_EQ(1, MIniData_Reload(m_ini));
    EXPECT_EQ(1, MIniData_Close(m_ini));
    EXPECT_EQ(1, MIniData_IsNew(m_ini));
}

TEST_F(MIniDataFlatTest, EntriesAreSetReadAndDeleted) {
    EXPECT_EQ(1, MIniData_SetContentString(m_ini, "[s]\n"));
    EXPECT_EQ(1, MIniData_SetDoubleEntry(m_ini, "s", "d", 1.5));
    EXPECT_EQ(1, MIniData_SetLongEntry(m_ini, "s", "l", 2));
    EXPECT_EQ(1, MIniData_SetLongLongEntry(m_ini, "t", "ll", 3));
    EXPECT_EQ("[s]\nd=1.5\nl=2\n[t]\nll=3\n", text_of(m_ini));
    EXPECT_EQ(2, MIniData_GetNumSections(m_ini));
    EXPECT_EQ(1, MIniData_SectionExists(m_ini, "t"));
    EXPECT_EQ(0, MIniData_SectionExists(m_ini, "u"));
    EXPECT_EQ(1, MIniData_EntryExists(m_ini, "s", "d"));
    EXPECT_EQ(0, MIniData_EntryExists(m_ini, "s", "ll"));
    double d = 0;
    long l = 0;
    long long ll = 0;
    EXPECT_EQ(1, MIniData_GetDoubleEntry(m_ini, "s", "d", &d));
    EXPECT_EQ(1, MIniData_GetLongEntry(m_ini, "s", "l", &l));
    EXPECT_EQ(1, MIniData_GetLongLongEntry(m_ini, "t", "ll", &ll));
    EXPECT_TRUE(d == 1.5 && l == 2 && ll == 3);
    EXPECT_EQ(1, MIniData_DeleteEntry(m_ini, "s", "d"));
    EXPECT_EQ(1, MIniData_DeleteSection(m_ini, "t"));
    EXPECT_EQ("[s]\nl=2\n", text_of(m_ini));
}

TEST_F(MIniDataFlatTest, StringsAreCopiedAsFarAsTheyFit) {
    MIniData_SetContentString(m_ini, "[s]\na=12345\n");
    char target[8] = "old";
    EXPECT_EQ(1, MIniData_GetStringEntry(m_ini, "s", "a", target, 6));
    EXPECT_STREQ("12345", target);
    EXPECT_EQ(0, MIniData_GetStringEntry(m_ini, "s", "a", target, 5));
    EXPECT_STREQ("1234", target);
    EXPECT_EQ(Texts{"MIniData_GetStringEntry(): returned string too long for target (5)"}, trace_reports());
    EXPECT_EQ("msl/mutil/src/MIniData", recording::error_trace_places().back().source);
    EXPECT_EQ(0, MIniData_GetStringEntry(m_ini, "s", "a", target, 0));
    EXPECT_STREQ("1234", target);
    EXPECT_EQ(Texts{"MIniData_GetStringEntry(): returned string too long for target (0)"}, trace_reports());
    EXPECT_EQ(0, MIniData_GetStringEntry(m_ini, "s", "none", target, 8));
    EXPECT_STREQ("1234", target);
}

TEST_F(MIniDataFlatTest, OnlyKnownFlagsPass) {
    const std::unique_ptr<MIniData, void (*)(MIniData*)> lax(MIniData_NewFlags(0x41), MIniData_Delete);
    EXPECT_EQ(1, MIniData_SetContentString(lax.get(), "[s]\nlax\n"));
    const std::unique_ptr<MIniData, void (*)(MIniData*)> strict(MIniData_NewFlags(0x40), MIniData_Delete);
    EXPECT_EQ(0, MIniData_SetContentString(strict.get(), "[s]\nlax\n"));
    trace_reports();
    MIniData_Delete(nullptr);
}

}  // namespace
