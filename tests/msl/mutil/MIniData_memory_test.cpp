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

}  // namespace
