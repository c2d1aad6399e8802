// Exhausted memory while lines are taken in. This program's allocations fail on demand.

#include <cerrno>
#include <new>

#include "MIniData.h"
#include "reports.h"

namespace {

bool exhausted = false;

using MIniDataMemoryTest = ReportsTest;

struct Line {
    const char* text;
    const char* what;
};

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (!exhausted) return ::operator new(size);
    errno = ENOMEM;
    return nullptr;
}

namespace {

TEST_F(MIniDataMemoryTest, IsReportedAndLeavesTheModelAsItWas) {
    const Line cases[] = {{"; comment", "MIniDataLine"}, {"[s]", "MIniDataSectionT"}};
    for (const Line& line : cases) {
        MIniData ini;
        exhausted = true;
        EXPECT_FALSE(ini.SetContentString(line.text));
        exhausted = false;
        EXPECT_STREQ("out of memory (Cannot allocate memory)", ini.GetLastError());
        EXPECT_EQ((Texts{"MIniData::parse_line(): new " + std::string(line.what) +
                             "() failed: Cannot allocate memory",
                         "MIniData::SetContentString(): parse_line() failed"}),
                  trace_reports());
        std::string text;
        ini.GetContentString(text);
        EXPECT_EQ("", text);
    }
}

TEST_F(MIniDataMemoryTest, AnEntryThatCannotBeMadeLeavesTheSection) {
    MIniData ini;
    EXPECT_TRUE(ini.SetContentString("[s]\n"));
    MIniDataSection& section = *ini.GetSection("s");
    const std::string added =
        "MIniDataSectionT::add_new_entry(): new MIniDataEntry() failed: Cannot allocate memory";
    exhausted = true;
    EXPECT_FALSE(section.SetDoubleEntry("a", 1));
    EXPECT_FALSE(section.SetLongEntry("a", 1));
    EXPECT_FALSE(section.SetLongLongEntry("a", 1));
    EXPECT_FALSE(ini.SetStringEntry("s", "a", "1"));
    exhausted = false;
    EXPECT_EQ((Texts{added, "MIniDataSectionT::SetDoubleEntry(): add_new_entry() failed", added,
                     "MIniDataSectionT::SetLongEntry(): add_new_entry() failed", added,
                     "MIniDataSectionT::SetLongLongEntry(): add_new_entry() failed", added,
                     "MIniDataSectionT::SetStringEntry(): add_new_entry() failed"}),
              trace_reports());
    EXPECT_EQ(0U, ini.GetNumEntries("s"));
}

TEST_F(MIniDataMemoryTest, ASectionThatCannotBeMadeIsReportedByWhoAskedForIt) {
    const std::string made =
        "MIniData::SetDoubleEntry(): new MIniDataSectionT() failed: Cannot allocate memory";
    MIniData ini;
    exhausted = true;
    EXPECT_FALSE(ini.SetDoubleEntry("s", "a", 1));
    EXPECT_FALSE(ini.SetLongEntry("s", "a", 1));
    EXPECT_FALSE(ini.SetLongLongEntry("s", "a", 1));
    EXPECT_FALSE(ini.SetStringEntry("s", "a", "1"));
    EXPECT_FALSE(ini.AddSection("s"));
    exhausted = false;
    EXPECT_EQ((Texts{made, "MIniData::SetDoubleEntry(): add_new_section() failed", made,
                     "MIniData::SetLongEntry(): add_new_section() failed", made,
                     "MIniData::SetLongLongEntry(): add_new_section() failed", made,
                     "MIniData::SetStringEntry(): add_new_section() failed", made,
                     "MIniData::AddSection(): add_new_section() failed"}),
              trace_reports());
    EXPECT_STREQ("out of memory (Cannot allocate memory)", ini.GetLastError());
    EXPECT_EQ(0U, ini.GetNumSections());
    EXPECT_FALSE(ini.IsSaved());
}

}  // namespace
