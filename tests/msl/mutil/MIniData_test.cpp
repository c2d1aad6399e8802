// The model and its file.

#include "MIniData.h"

#include <cerrno>
#include <limits>
#include <sstream>

#include "faulty_files.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class MIniDataTest : public ReportsTest {
protected:
    std::string file(const std::string& content) const { return m_directory.file("test.ini", content); }

    TemporaryDirectory m_directory;
};

std::string text_of(const MIniData& ini) {
    std::string text = "old";
    ini.GetContentString(text);
    return text;
}

TEST_F(MIniDataTest, StartsClosedNewAndUnsaved) {
    const MIniData ini;
    EXPECT_FALSE(ini.IsOpen());
    EXPECT_TRUE(ini.IsNew());
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_STREQ("", ini.GetFilename());
    EXPECT_STREQ("", ini.GetLastError());
    EXPECT_EQ(0U, ini.GetNumSections());
}

TEST_F(MIniDataTest, OpenReadsTheWholeFile) {
    const std::string path = file("; head\n\n[b]\r\n\r\n  key = value\r[a]\n \n#c\nx=1");
    const MIniData ini(path);
    EXPECT_TRUE(ini.IsOpen());
    EXPECT_FALSE(ini.IsNew());
    EXPECT_TRUE(ini.IsSaved());
    EXPECT_EQ(path, ini.GetFilename());
    EXPECT_EQ("; head\n[a]\n \n#c\nx=1\n[b]\n  key = value\n", text_of(ini));
}

TEST_F(MIniDataTest, AMissingFileIsAnOpenNewModel) {
    const MIniData ini(m_directory.path("missing.ini"));
    EXPECT_TRUE(ini.IsOpen());
    EXPECT_TRUE(ini.IsNew());
    EXPECT_FALSE(ini.IsSaved());
}

TEST_F(MIniDataTest, AnEmptyFileIsFound) {
    const MIniData ini(file(""));
    EXPECT_TRUE(ini.IsOpen());
    EXPECT_FALSE(ini.IsNew());
    EXPECT_TRUE(ini.IsSaved());
    EXPECT_EQ("", text_of(ini));
}

TEST_F(MIniDataTest, AByteOrderMarkOfUtf8IsTakenOff) {
    MIniData ini(file("\xEF\xBB\xBF[s]\na=1\n"));
    EXPECT_EQ("[s]\na=1\n", text_of(ini));
    EXPECT_TRUE(ini.Open(file("\xEF\xBB\xBF")));
    EXPECT_TRUE(ini.IsOpen());
    EXPECT_EQ("", text_of(ini));
    EXPECT_TRUE(ini.Open(file("[s]\n\xEF\xBB\xBF=1\n")));
    EXPECT_TRUE(ini.EntryExists("s", "\xEF\xBB\xBF"));
    EXPECT_FALSE(ini.Open(file("\xEF\xBB\n[s]\n")));
    EXPECT_EQ(2U, trace_reports().size());
}

TEST_F(MIniDataTest, WiderEncodingsAreRefused) {
    using namespace std::string_literals;
    for (const std::string& mark : {"\x00\x00\xFE\xFF"s, "\xFF\xFE\x00\x00"s, "\xFE\xFF"s, "\xFF\xFE"s}) {
        MIniData ini;
        const std::string path = file(mark + "[s]\n");
        EXPECT_FALSE(ini.Open(path));
        EXPECT_FALSE(ini.IsOpen());
        EXPECT_STREQ("UTF16/32 Unicode format not supported.", ini.GetLastError());
        EXPECT_EQ(
            Texts{"MIniData::Open(\"" + path.substr(0, 80) + "\"): UTF16/32 Unicode format not supported"},
            trace_reports());
    }
}

TEST_F(MIniDataTest, EmptyLinesAndLinesOfNulAreDropped) {
    using namespace std::string_literals;
    const MIniData ini(file("[s]\n\n\0x=1\ny=2\n"s));
    EXPECT_EQ("[s]\ny=2\n", text_of(ini));
}

TEST_F(MIniDataTest, NamesThatDifferBehindANulAreDifferent) {
    using namespace std::string_literals;
    MIniData ini(MINIDATA_REPLACE_SECTIONS | MINIDATA_REPLACE_ENTRIES);
    EXPECT_TRUE(ini.Open(file("[a]\nx=0\n[a\0b]\nx=1\nx\0y=2\nx\0y=3\n[a\0b]\nx=4\nx\0y=5\n"s)));
    EXPECT_EQ("[a]\nx=0\n[a\0b]\nx=4\nx\0y=5\n"s, text_of(ini));
}

TEST_F(MIniDataTest, ABadLineStopsTheLoad) {
    MIniData ini;
    EXPECT_FALSE(ini.Open(file("[s]\na=1\na=2\nb=3\n")));
    EXPECT_FALSE(ini.IsOpen());
    EXPECT_FALSE(ini.IsNew());
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_EQ("[s]\na=1\n", text_of(ini));
    EXPECT_EQ((Texts{"MIniData::parse_line(): Entry \"a\" seen twice in section [s]",
                     "MIniData::Open(): parse_line(a=2) failed"}),
              trace_reports());
    EXPECT_FALSE(ini.Reload());
    EXPECT_EQ("[s]\na=1\n", text_of(ini));
}

TEST_F(MIniDataTest, TheConstructorDumpsItsFailure) {
    const std::string path = file("bad\n");
    const MIniData ini(path);
    EXPECT_FALSE(ini.IsOpen());
    EXPECT_EQ((Texts{"MIniData::parse_line(): Possible entry \"bad\" found before first section",
                     "MIniData::Open(): parse_line(bad) failed",
                     "MIniData::MIniData(): Open(\"" + path.substr(0, 60) + "\") failed"}),
              log_reports());
    trace_reports();
}

TEST_F(MIniDataTest, AFileThatCannotBeOpenedOrReadFails) {
    FaultyFiles files;
    MIniData ini;
    const std::string path = file("[s]\na=1");
    files.fail("open", 1, EACCES);
    EXPECT_FALSE(ini.Open(path));
    EXPECT_EQ("MIniData::Open(): MFastFileReader::Open() failed", trace_reports().back());
    EXPECT_FALSE(ini.IsNew());
    files.fail("read", 2, EIO);
    EXPECT_FALSE(ini.Open(path));
    EXPECT_EQ("MIniData::Open(): MFastFileReader::ReadLine() failed", trace_reports().back());
    EXPECT_EQ(0, files.open_handles());
}

TEST_F(MIniDataTest, AReadThatFailsBeforeAnyLineLooksLikeAnEmptyFile) {
    FaultyFiles files;
    MIniData ini;
    files.fail("read", 1, EIO);
    EXPECT_TRUE(ini.Open(file("[s]\n")));
    EXPECT_EQ("", text_of(ini));
    EXPECT_EQ(Texts{"MFastFileReader::IsEOF(): fill_buffer() failed"}, log_reports());
    trace_reports();
}

TEST_F(MIniDataTest, ADirectoryIsNoIniFile) {
    MIniData ini;
    EXPECT_FALSE(ini.Open(m_directory.path()));
    EXPECT_EQ("MIniData::Open(): MFastFileReader::Open() failed", trace_reports().back());
}

TEST_F(MIniDataTest, CloseEmptiesTheModel) {
    MIniData ini(file("[s]\n"));
    EXPECT_TRUE(ini.Close());
    EXPECT_FALSE(ini.IsOpen());
    EXPECT_TRUE(ini.IsNew());
    EXPECT_TRUE(ini.IsSaved());
    EXPECT_STREQ("", ini.GetFilename());
    EXPECT_EQ("", text_of(ini));
}

TEST_F(MIniDataTest, ReloadReadsTheFileAsItIsNow) {
    MIniData ini;
    EXPECT_FALSE(ini.Reload());
    EXPECT_TRUE(ini.Open(file("[s]\na=1\n")));
    file("[t]\n");
    EXPECT_TRUE(ini.Reload());
    EXPECT_EQ("[t]\n", text_of(ini));
    EXPECT_TRUE(ini.Open(ini.GetFilename()));
    EXPECT_EQ("[t]\n", text_of(ini));
}

TEST_F(MIniDataTest, SetContentStringLeavesFileAndFlagsButIsUnsaved) {
    const std::string path = file("[s]\n");
    MIniData ini(path);
    EXPECT_TRUE(ini.SetContentString("[t]\n\nb=1\n"));
    EXPECT_EQ("[t]\n\nb=1\n", text_of(ini));
    EXPECT_TRUE(ini.IsOpen());
    EXPECT_FALSE(ini.IsNew());
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_EQ(path, ini.GetFilename());
}

TEST_F(MIniDataTest, NumbersAreReadAtTheStartOfTheValue) {
    MIniData ini;
    ini.SetContentString(
        "[s]\nd= 1.5e2x\nl=\t12abc\nbig=99999999999\nsmall=-99999999999\nnone=abc\nempty=\n");
    double d = -1;
    long l = -1;
    long long ll = -1;
    EXPECT_TRUE(ini.GetDoubleEntry("s", "d", d));
    EXPECT_EQ(150.0, d);
    EXPECT_TRUE(ini.GetLongEntry("s", "l", l));
    EXPECT_EQ(12, l);
    EXPECT_TRUE(ini.GetLongEntry("s", "big", l));
    EXPECT_EQ(2147483647, l);
    EXPECT_TRUE(ini.GetLongEntry("s", "small", l));
    EXPECT_EQ(-2147483647L - 1, l);
    EXPECT_TRUE(ini.GetLongLongEntry("s", "big", ll));
    EXPECT_EQ(99999999999LL, ll);
    for (const char* const name : {"none", "empty"}) {
        d = 5;
        l = 5;
        ll = 5;
        EXPECT_FALSE(ini.GetDoubleEntry("s", name, d));
        EXPECT_FALSE(ini.GetLongEntry("s", name, l));
        EXPECT_FALSE(ini.GetLongLongEntry("s", name, ll));
        EXPECT_EQ(0.0, d);
        EXPECT_EQ(0, l);
        EXPECT_EQ(0, ll);
    }
}

TEST_F(MIniDataTest, AMissingSectionOrEntryLeavesTheTarget) {
    MIniData ini;
    ini.SetContentString("[s]\na=1\n");
    for (const char* const section : {"s", "none"}) {
        double d = 5;
        long l = 5;
        long long ll = 5;
        std::string text = "old";
        EXPECT_FALSE(ini.GetDoubleEntry(section, "x", d));
        EXPECT_FALSE(ini.GetLongEntry(section, "x", l));
        EXPECT_FALSE(ini.GetLongLongEntry(section, "x", ll));
        EXPECT_FALSE(ini.GetStringEntry(section, "x", text));
        EXPECT_EQ(5.0, d);
        EXPECT_EQ(5, l);
        EXPECT_EQ(5, ll);
        EXPECT_EQ("old", text);
        EXPECT_EQ(nullptr, ini.GetEntry(section, "x"));
    }
    EXPECT_EQ(0U, ini.GetNumEntries("none"));
    EXPECT_FALSE(ini.EntryExists("none", "a"));
    EXPECT_EQ(nullptr, ini.GetSection("none"));
    Texts names{"old"};
    ini.GetEntryNames("none", names);
    EXPECT_EQ(Texts{}, names);
}

TEST_F(MIniDataTest, SectionsOfferTheSameGetters) {
    MIniData ini;
    ini.SetContentString("[s]\nn=7.5\n");
    const MIniDataSection& section = *ini.GetSection("s");
    double d = 0;
    long l = 0;
    long long ll = 0;
    std::string text;
    EXPECT_TRUE(section.GetDoubleEntry("n", d) && section.GetLongEntry("n", l));
    EXPECT_TRUE(section.GetLongLongEntry("n", ll) && section.GetStringEntry("n", text));
    EXPECT_EQ(7.5, d);
    EXPECT_EQ(7, l);
    EXPECT_EQ(7, ll);
    EXPECT_EQ("7.5", text);
    EXPECT_TRUE(section.EntryExists("n"));
    EXPECT_EQ(1U, section.GetNumEntries());
}

TEST_F(MIniDataTest, CopiesAreEqualAndIndependent) {
    MIniData ini(file("; c\n[s]\na=1\n"));
    MIniData copy(ini);
    EXPECT_TRUE(copy == ini);
    EXPECT_TRUE(copy.IsOpen());
    EXPECT_FALSE(copy.IsNew());
    EXPECT_TRUE(copy.IsSaved());
    EXPECT_STREQ(ini.GetFilename(), copy.GetFilename());
    EXPECT_TRUE(copy.DeleteEntry("s", "a"));
    EXPECT_TRUE(copy != ini);
    EXPECT_TRUE(ini.EntryExists("s", "a"));
    copy = ini;
    EXPECT_TRUE(copy == ini);
    const MIniData& itself = copy;
    copy = itself;
    EXPECT_TRUE(copy == ini);
}

TEST_F(MIniDataTest, CopiesTakeFlagsAndErrorAlong) {
    MIniData ini(MINIDATA_LAX_ENTRIES);
    EXPECT_FALSE(ini.SetContentString("["));
    ini.SetContentString("[s]\nlax\n");
    const MIniData copy(ini);
    EXPECT_TRUE(copy == ini);
    EXPECT_STREQ("no matching ']' found in \"[\"", copy.GetLastError());
    trace_reports();
}

TEST_F(MIniDataTest, StreamsItsText) {
    MIniData ini;
    ini.SetContentString("[b]\n[a]\nx=1\n");
    std::ostringstream stream;
    stream << ini;
    EXPECT_EQ("[a]\nx=1\n[b]\n", stream.str());
}

TEST_F(MIniDataTest, FlagsCanBeSetLater) {
    MIniData ini;
    EXPECT_FALSE(ini.SetContentString("[s]\nlax\n"));
    ini.SetFlags(MINIDATA_LAX_ENTRIES);
    EXPECT_TRUE(ini.SetContentString("[s]\nlax\n"));
    trace_reports();
}

TEST_F(MIniDataTest, DeleteSectionTakesItsLines) {
    MIniData ini(file("[s]\na=1\n; c\n[t]\nb=2\n"));
    EXPECT_TRUE(ini.DeleteSection("s"));
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_EQ("[t]\nb=2\n", text_of(ini));
    EXPECT_FALSE(ini.DeleteSection("s"));
    EXPECT_EQ(Texts{"MIniData::DeleteSection(): section \"s\" not found"}, trace_reports());
}

TEST_F(MIniDataTest, DeleteEntryTakesItsLine) {
    MIniData ini(file("[s]\n; c\na=1\n b =2\n"));
    EXPECT_TRUE(ini.DeleteEntry("s", "b "));
    EXPECT_FALSE(ini.IsSaved());
    EXPECT_EQ("[s]\n; c\na=1\n", text_of(ini));
    EXPECT_FALSE(ini.EntryExists("s", "b"));
    EXPECT_FALSE(ini.DeleteEntry("s", "b"));
    EXPECT_EQ((Texts{"MIniDataSectionT::DeleteEntry(): entry \"b\" not found in entry_map",
                     "MIniData::DeleteEntry(): MIniDataSectionT::DeleteEntry() failed (\"s\",\"b\")"}),
              trace_reports());
    EXPECT_FALSE(ini.DeleteEntry("none", "b"));
    EXPECT_EQ(Texts{"MIniData::DeleteEntry(): section \"none\" not found"}, trace_reports());
}

TEST_F(MIniDataTest, DeleteEntryFailsBehindALaxLine) {
    MIniData ini(MINIDATA_LAX_ENTRIES);
    ini.SetContentString("[s]\na=1\nlax\nb=2\n[t]\n=x\nb=2\n");
    EXPECT_TRUE(ini.DeleteEntry("s", "a"));
    EXPECT_FALSE(ini.DeleteEntry("s", "b"));
    EXPECT_EQ("MIniDataSectionT::DeleteEntry(): no '=' found in \"lax\"", trace_reports().front());
    EXPECT_FALSE(ini.DeleteEntry("t", "b"));
    EXPECT_EQ("MIniDataSectionT::DeleteEntry(): no entry name in \"=x\"", trace_reports().front());
    EXPECT_EQ("[s]\nlax\nb=2\n[t]\n=x\nb=2\n", text_of(ini));
}

}  // namespace
