// Changes of the model, and what is written of them.

#include <cerrno>
#include <limits>

#include "MIniData.h"
#include "faulty_files.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class MIniDataEditTest : public ReportsTest {
protected:
    std::string file(const std::string& content) const { return m_directory.file("test.ini", content); }
    std::string saved() const { return m_directory.content("test.ini"); }

    TemporaryDirectory m_directory;
};

std::string text_of(const MIniData& ini) {
    std::string text;
    ini.GetContentString(text);
    return text;
}

TEST_F(MIniDataEditTest, SettingReplacesTheValueAlone) {
    MIniData ini(file("[s]\n  key \t= 5 ; note\n"));
    EXPECT_TRUE(ini.SetLongEntry("s", "key", 6));
    EXPECT_EQ("[s]\n  key \t=6\n", text_of(ini));
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_TRUE(ini.SetStringEntry("s", "key \t", " a=b "));
    EXPECT_EQ("[s]\n  key \t= a=b \n", text_of(ini));
}

TEST_F(MIniDataEditTest, KeyWithABlankBehindTheEqualsLosesIt) {
    MIniData ini(file("[s]\nkey = 5\n"));
    EXPECT_TRUE(ini.SetLongEntry("s", "key", 6));
    EXPECT_EQ("[s]\nkey =6\n", text_of(ini));
}

TEST_F(MIniDataEditTest, NewEntriesGoBehindTheLastLine) {
    MIniData ini(file("[s]\na=1\n; end\n \n"));
    EXPECT_TRUE(ini.SetStringEntry("s", "b \t", "x"));
    EXPECT_TRUE(ini.SetStringEntry("new", "c", ""));
    EXPECT_EQ("[new]\nc=\n[s]\na=1\n; end\n \nb=x\n", text_of(ini));
    std::string value;
    EXPECT_TRUE(ini.GetStringEntry("s", "b", value));
    EXPECT_EQ("x", value);
}

TEST_F(MIniDataEditTest, NumbersAreWrittenExactly) {
    MIniData ini;
    EXPECT_TRUE(ini.SetDoubleEntry("s", "a", 0.1));
    EXPECT_TRUE(ini.SetDoubleEntry("s", "b", -1e300));
    EXPECT_TRUE(ini.SetDoubleEntry("s", "c", 2));
    EXPECT_TRUE(ini.SetDoubleEntry("s", "d", std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(ini.SetLongEntry("s", "e", -2147483647L - 1));
    EXPECT_TRUE(ini.SetLongLongEntry("s", "f", std::numeric_limits<long long>::min()));
    EXPECT_EQ(
        "[s]\na=0.10000000000000001\nb=-1.0000000000000001e+300\nc=2\nd=inf\n"
        "e=-2147483648\nf=-9223372036854775808\n",
        text_of(ini));
    double d = 0;
    EXPECT_TRUE(ini.GetDoubleEntry("s", "a", d));
    EXPECT_EQ(0.1, d);
}

TEST_F(MIniDataEditTest, ALongIsWrittenWith32Bits) {
    if constexpr (sizeof(long) > 4) {
        MIniData ini;
        EXPECT_TRUE(ini.SetLongEntry("s", "a", static_cast<long>(0x100000005LL)));
        EXPECT_EQ("[s]\na=5\n", text_of(ini));
    }
}

TEST_F(MIniDataEditTest, ACommentIsNoName) {
    const std::string class_name = "MIniDataT<struct MIniDataCaseSensitiveCompare>::";
    MIniData ini;
    for (const std::string name : {";x", "  ;x", "#x", "\t*", "/"}) {
        const std::string text = "cannot add comment as an entry: \"" + name;
        const char* const n = name.c_str();
        EXPECT_FALSE(ini.SetDoubleEntry("s", n, 1.5));
        EXPECT_EQ(text + "=1.5\"", ini.GetLastError());
        EXPECT_EQ(Texts{class_name + "SetDoubleEntry(): " + text + "=1.5\""}, trace_reports());
        EXPECT_FALSE(ini.SetLongLongEntry("s", n, 5));
        EXPECT_EQ(Texts{class_name + "SetLongEntry(): " + text + "=5\""}, trace_reports());
        EXPECT_FALSE(ini.SetLongEntry("s", n, 6));
        EXPECT_EQ(Texts{class_name + "SetLongEntry(): " + text + "=6\""}, trace_reports());
        EXPECT_FALSE(ini.SetStringEntry("s", n, "v"));
        EXPECT_EQ(Texts{class_name + "SetStringEntry(): " + text + "=v\""}, trace_reports());
    }
    EXPECT_EQ("", text_of(ini));
}

TEST_F(MIniDataEditTest, SettingALaxLineReplacesTheWholeOfIt) {
    MIniData ini(MINIDATA_LAX_ENTRIES);
    ini.SetContentString("[s]\n  just text\n =v\n");
    EXPECT_TRUE(ini.SetStringEntry("s", "just text", "new"));
    EXPECT_TRUE(ini.SetStringEntry("s", "", "w"));
    EXPECT_EQ("[s]\nnew\n =w\n", text_of(ini));
}

TEST_F(MIniDataEditTest, EntriesAndSectionsCanBeSetThemselves) {
    MIniData ini;
    ini.SetContentString("[s]\na= 1\n");
    MIniDataSection& section = *ini.GetSection("s");
    EXPECT_TRUE(section.SetDoubleEntry("d", 1.5) && section.SetLongEntry("l", 2));
    EXPECT_TRUE(section.SetLongLongEntry("ll", 3) && section.SetStringEntry("t", "x"));
    section.GetEntry("a")->SetString("y");
    EXPECT_EQ("[s]\na=y\nd=1.5\nl=2\nll=3\nt=x\n", text_of(ini));
    section.GetEntry("d")->SetDouble(2.5);
    section.GetEntry("l")->SetLong(-1);
    section.GetEntry("ll")->SetLongLong(-2);
    EXPECT_EQ("[s]\na=y\nd=2.5\nl=-1\nll=-2\nt=x\n", text_of(ini));
}

TEST_F(MIniDataEditTest, AddSectionChangesNothingIfItIsThere) {
    MIniData ini(file("[s] x\n"));
    EXPECT_TRUE(ini.AddSection("s"));
    EXPECT_TRUE(ini.IsSaved());
    EXPECT_TRUE(ini.AddSection("a"));
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_EQ("[a]\n[s] x\n", text_of(ini));
}

TEST_F(MIniDataEditTest, RenameSectionKeepsItsLines) {
    MIniData ini(file("[b] tail\n; c\nx=1\n[c]\n"));
    EXPECT_TRUE(ini.RenameSection("b", "z"));
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_EQ("[c]\n[z]\n; c\nx=1\n", text_of(ini));
    EXPECT_TRUE(ini.SetStringEntry("z", "x", "2"));
    EXPECT_TRUE(ini.DeleteEntry("z", "x"));
    EXPECT_EQ("[c]\n[z]\n; c\n", text_of(ini));
}

TEST_F(MIniDataEditTest, RenameSectionRefusesWhatIsThereOrMissing) {
    const std::string name = "MIniDataT<struct MIniDataCaseSensitiveCompare>::RenameSection(): ";
    MIniData ini(file("[a]\n[b]\n"));
    EXPECT_FALSE(ini.RenameSection("a", "b"));
    EXPECT_FALSE(ini.RenameSection("a", "a"));
    EXPECT_FALSE(ini.RenameSection("x", "y"));
    EXPECT_EQ((Texts{name + "section \"b\" already exists", name + "section \"a\" already exists",
                     name + "the source section \"x\" doesn't exists"}),
              trace_reports());
    EXPECT_TRUE(ini.IsSaved());
}

TEST_F(MIniDataEditTest, DeletingByTextLeavesNoEntryWithoutALine) {
    MIniData ini;
    EXPECT_TRUE(ini.SetStringEntry("s", "a=b", "1"));
    EXPECT_TRUE(ini.SetStringEntry("s", "a", "2"));
    EXPECT_EQ("[s]\na=b=1\na=2\n", text_of(ini));
    EXPECT_FALSE(ini.DeleteEntry("s", "a=b"));
    EXPECT_EQ("MIniDataSectionT::DeleteEntry(): entry \"a=b\" not found in line_vec",
              trace_reports().front());
    EXPECT_TRUE(ini.DeleteEntry("s", "a"));
    EXPECT_EQ("[s]\na=2\n", text_of(ini));
    EXPECT_FALSE(ini.EntryExists("s", "a=b"));
    EXPECT_FALSE(ini.EntryExists("s", "a"));

    MIniData blanks;
    EXPECT_TRUE(blanks.SetStringEntry("s", "  a", "1"));
    EXPECT_TRUE(blanks.SetStringEntry("s", "a", "2"));
    EXPECT_TRUE(blanks.DeleteEntry("s", "a"));
    EXPECT_EQ("[s]\na=2\n", text_of(blanks));
    EXPECT_EQ(0U, blanks.GetNumEntries("s"));
}

TEST_F(MIniDataEditTest, SaveWritesCrLfAndSortsSections) {
    MIniData ini(file("\xEF\xBB\xBF; head\n\n[b]\rx = 1 ; t\n \n\n[a] tail\n#c"));
    EXPECT_TRUE(ini.SetStringEntry("a", "y", "2"));
    EXPECT_TRUE(ini.Save());
    EXPECT_TRUE(ini.IsSaved());
    EXPECT_EQ("; head\r\n[a] tail\r\n#c\r\ny=2\r\n[b]\r\nx = 1 ; t\r\n \r\n", saved());
}

TEST_F(MIniDataEditTest, SaveOfNothingIsAnEmptyFile) {
    for (const char* const content : {"", "\xEF\xBB\xBF"}) {
        MIniData ini(file(content));
        EXPECT_TRUE(ini.Save());
        EXPECT_EQ("", saved());
    }
    MIniData missing(m_directory.path("new.ini"));
    EXPECT_TRUE(missing.Save());
    EXPECT_FALSE(missing.IsNew());
    EXPECT_EQ(0U, std::filesystem::file_size(m_directory.path("new.ini")));
}

TEST_F(MIniDataEditTest, TheFlagsSayHowASaveGoes) {
    const std::string path = file("[s]\n");
    for (const unsigned flags : {0U, 8U, 16U, 24U}) {
        FaultyFiles files;
        MIniData ini(flags);
        EXPECT_TRUE(ini.Open(path));
        EXPECT_TRUE(ini.Save());
        EXPECT_EQ(flags ? 1 : 0, files.calls("flush"));
        EXPECT_EQ(flags & 16U ? 1 : 0, files.calls("rename"));
        EXPECT_EQ("[s]\r\n", saved());
    }
}

TEST_F(MIniDataEditTest, ASaveThatFailsChangesNothing) {
    MIniData ini(file("[s]\n"));
    ini.AddSection("t");
    FaultyFiles files;
    files.fail("open", 1, EACCES);
    EXPECT_FALSE(ini.Save());
    EXPECT_EQ("MIniData::Save(): MFastFile_WriteLinesAtOnce(\"" +
                  std::string(ini.GetFilename()).substr(0, 40) + "\") failed",
              trace_reports().back());
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_TRUE(ini.IsOpen());
    EXPECT_EQ("[s]\n", saved());
    EXPECT_TRUE(ini.Save());
}

TEST_F(MIniDataEditTest, AModelWithoutAFileCannotBeSaved) {
    MIniData ini;
    EXPECT_FALSE(ini.Save());
    EXPECT_TRUE(ini.IsNew());
    EXPECT_EQ(4U, trace_reports().size());
}

}  // namespace
