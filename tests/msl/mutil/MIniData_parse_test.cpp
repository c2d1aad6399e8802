// What a line is taken for, and what it is refused for.

#include "MIniData.h"
#include "reports.h"

namespace {

using MIniDataParseTest = ReportsTest;

std::string value_of(const MIniData& ini, const char* section, const char* name) {
    std::string value = "(none)";
    ini.GetStringEntry(section, name, value);
    return value;
}

Texts entries_of(const MIniData& ini, const char* section) {
    Texts names;
    ini.GetEntryNames(section, names);
    return names;
}

TEST_F(MIniDataParseTest, SectionNamesAreNotTrimmed) {
    MIniData ini;
    EXPECT_TRUE(ini.SetContentString("[ a ]\n[]\n[b]c]\n[d] ; said\n"));
    Texts names;
    ini.GetSectionNames(names);
    EXPECT_EQ((Texts{"", " a ", "b", "d"}), names);
    EXPECT_TRUE(ini.SectionExists(" a "));
    EXPECT_FALSE(ini.SectionExists("a"));
    EXPECT_EQ("[b]c]", ini.GetSection("b")->text);
    EXPECT_EQ(4U, ini.GetNumSections());
}

TEST_F(MIniDataParseTest, SectionsOfDifferentCaseAreDifferent) {
    MIniData ini;
    EXPECT_TRUE(ini.SetContentString("[section]\n[SECTION]\n[Section]\n"));
    Texts names;
    ini.GetSectionNames(names);
    EXPECT_EQ((Texts{"SECTION", "Section", "section"}), names);
}

TEST_F(MIniDataParseTest, CommentsAndBlankLinesAreNoEntries) {
    MIniData ini;
    EXPECT_TRUE(ini.SetContentString("; head\n \t \n[s]\n#a=1\n*b=1\n  /path=1\n\t;c=1\n\n  \nd=1\n"));
    EXPECT_EQ(Texts{"d"}, entries_of(ini, "s"));
    EXPECT_EQ(1U, ini.GetNumEntries("s"));
    EXPECT_EQ(8U, ini.GetSection("s")->line_vec.size());
}

TEST_F(MIniDataParseTest, AValueIsEverythingBehindTheFirstEquals) {
    MIniData ini;
    EXPECT_TRUE(ini.SetContentString("[s]\nkey=1 ; note\n  k 2\t =  a=b \t\nk3=\nk4=\"q\"\n"));
    EXPECT_EQ("1 ; note", value_of(ini, "s", "key"));
    EXPECT_EQ("  a=b \t", value_of(ini, "s", "k 2"));
    EXPECT_EQ("", value_of(ini, "s", "k3"));
    EXPECT_EQ("\"q\"", value_of(ini, "s", "k4"));
    long number = 0;
    EXPECT_TRUE(ini.GetLongEntry("s", "key", number));
    EXPECT_EQ(1, number);
}

TEST_F(MIniDataParseTest, NamesAreLookedUpWithoutTheirTrailingBlanks) {
    MIniData ini;
    ini.SetContentString("[s]\nkey = 5\n");
    EXPECT_EQ(" 5", value_of(ini, "s", "key \t "));
    EXPECT_EQ("(none)", value_of(ini, "s", " key"));
    EXPECT_FALSE(ini.EntryExists("s ", "key"));
}

struct BadText {
    unsigned flags;
    const char* text;
    const char* error;
};

void expect_refused(const BadText& bad, const Texts& reports) {
    EXPECT_EQ((Texts{std::string("MIniData::parse_line(): ") + bad.error,
                     "MIniData::SetContentString(): parse_line() failed"}),
              reports)
        << bad.text;
}

TEST_F(MIniDataParseTest, BadLinesAreRefused) {
    const BadText cases[] = {
        {0, "[", "no matching ']' found in \"[\""},
        {0, "[abc", "no matching ']' found in \"[abc\""},
        {0, "[s]\n[s]", "Section [s] seen twice"},
        {0, "x=1", "Possible entry \"x=1\" found before first section"},
        {3, "x", "Possible entry \"x\" found before first section"},
        {0, "  [x]", "Possible entry \"  [x]\" found before first section"},
        {0, "[s]\n  [x]", "No '=' found in \"  [x]\" in section [s]"},
        {0, "[s] tail\nabc", "No '=' found in \"abc\" in section [s] tail"},
        {0, "[s]\n  =5", "No entry name found before '=' in \"  =5\" in section [s]"},
        {0, "[s]\na=1\n a =2", "Entry \"a\" seen twice in section [s]"},
    };
    for (const BadText& bad : cases) {
        MIniData ini(bad.flags);
        EXPECT_FALSE(ini.SetContentString(bad.text));
        EXPECT_STREQ(bad.error, ini.GetLastError());
        expect_refused(bad, trace_reports());
    }
    EXPECT_EQ("msl/mutil/src/MIniData_template_core", recording::error_trace_places().front().source);
}

TEST_F(MIniDataParseTest, ABracketInAnEntryIsPartOfItsName) {
    MIniData ini;
    EXPECT_TRUE(ini.SetContentString("[s]\n  [x]=1\n"));
    EXPECT_EQ("1", value_of(ini, "s", "[x]"));
}

TEST_F(MIniDataParseTest, WhatCameBeforeABadLineStays) {
    MIniData ini;
    EXPECT_FALSE(ini.SetContentString("[s]\na=1\nbad\nb=2\n"));
    EXPECT_EQ(Texts{"a"}, entries_of(ini, "s"));
    EXPECT_EQ(2U, trace_reports().size());
}

TEST_F(MIniDataParseTest, MessagesAreBounded) {
    MIniData ini;
    const std::string longer(3000, 'x');
    EXPECT_FALSE(ini.SetContentString("[s]\n" + longer));
    EXPECT_EQ("No '=' found in \"" + longer.substr(0, 50) + "\" in section [s]",
              std::string(ini.GetLastError()));
    EXPECT_EQ("MIniData::parse_line(): " + std::string(ini.GetLastError()).substr(0, 70),
              trace_reports().front());
    EXPECT_FALSE(ini.SetContentString("[s]\n=" + longer));
    EXPECT_EQ(1023U, std::string(ini.GetLastError()).size());
    trace_reports();
}

TEST_F(MIniDataParseTest, LaxEntriesNeedNoEqualsAndNoName) {
    for (const unsigned flags : {1U, 2U, 3U}) {
        MIniData ini(flags);
        EXPECT_TRUE(ini.SetContentString("[s]\n\t just text \n =empty\n"));
        EXPECT_EQ((Texts{"", "just text"}), entries_of(ini, "s"));
        EXPECT_EQ("\t just text ", value_of(ini, "s", "just text"));
        EXPECT_EQ("empty", value_of(ini, "s", ""));
    }
}

TEST_F(MIniDataParseTest, ASecondSectionReplacesTheFirstWhereAllowed) {
    MIniData ini(MINIDATA_REPLACE_SECTIONS);
    EXPECT_TRUE(ini.SetContentString("[s]\na=1\n[t]\nb=2\n[s] again\nc=3\n"));
    EXPECT_EQ(Texts{"c"}, entries_of(ini, "s"));
    std::string text;
    ini.GetContentString(text);
    EXPECT_EQ("[s] again\nc=3\n[t]\nb=2\n", text);
    EXPECT_TRUE(ini.SetContentString("[s]\na=1\n[s]\nc=3\n"));
}

TEST_F(MIniDataParseTest, ASecondEntryReplacesTheFirstWhereAllowed) {
    MIniData ini(MINIDATA_REPLACE_ENTRIES);
    EXPECT_TRUE(ini.SetContentString("[s]\na=1\nb=2\na =3\n"));
    std::string text;
    ini.GetContentString(text);
    EXPECT_EQ("[s]\nb=2\na =3\n", text);
    EXPECT_EQ("3", value_of(ini, "s", "a"));
}

TEST_F(MIniDataParseTest, ReplacingAnEntryFailsBehindALineWithoutOne) {
    MIniData ini(MINIDATA_REPLACE_ENTRIES | MINIDATA_LAX_ENTRIES);
    EXPECT_FALSE(ini.SetContentString("[s]\nlax\na=1\na=2\n"));
    EXPECT_STREQ("Entry \"a\" deleting previous version failed", ini.GetLastError());
    EXPECT_EQ((Texts{"MIniDataSectionT::DeleteEntry(): no '=' found in \"lax\"",
                     "MIniData::parse_line(): DeleteEntry() failed",
                     "MIniData::SetContentString(): parse_line() failed"}),
              trace_reports());
}

TEST_F(MIniDataParseTest, LinesOfATextEndAnyWay) {
    MIniData ini;
    EXPECT_TRUE(ini.SetContentString("[s]\r\n\r\na=1\rb=2\n\n\rc=3"));
    std::string text;
    ini.GetContentString(text);
    EXPECT_EQ("[s]\n\na=1\nb=2\n\n\nc=3\n", text);
    EXPECT_TRUE(ini.SetContentString(""));
    ini.GetContentString(text);
    EXPECT_EQ("", text);
}

}  // namespace
