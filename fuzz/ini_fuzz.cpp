// A file of any bytes under any flags, the first byte: it is refused, or what was read can be saved and read
// again, and every entry can be got, set and deleted.

#include <string>
#include <vector>

#include "MIniData.h"
#include "memory_files.h"
#include "recording_facilities.h"
#include "require.h"
#include "target.h"

namespace {

constexpr std::uint8_t flag_bits =
    MINIDATA_LAX_ENTRIES | MINIDATA_REPLACE_SECTIONS | MINIDATA_RESERVED_4 | MINIDATA_REPLACE_ENTRIES;

std::string content_of(const MIniData& ini) {
    std::string text;
    ini.GetContentString(text);
    return text;
}

void save_and_reload(MIniData& ini) {
    const std::string before = content_of(ini);
    REQUIRE(ini.Save());
    REQUIRE(ini.IsSaved());
    REQUIRE(ini.Reload());
    REQUIRE(content_of(ini) == before);
}

void get_set_and_delete(MIniData& ini, const std::string& section, const std::string& name) {
    // The operations take texts that end with the first NUL.
    if ((section + name).find('\0') != std::string::npos) return;
    std::string value;
    double d = 0;
    long l = 0;
    long long ll = 0;
    REQUIRE(ini.GetStringEntry(section.c_str(), name.c_str(), value));
    ini.GetDoubleEntry(section.c_str(), name.c_str(), d);
    ini.GetLongEntry(section.c_str(), name.c_str(), l);
    ini.GetLongLongEntry(section.c_str(), name.c_str(), ll);
    if (ini.SetStringEntry(section.c_str(), name.c_str(), value + "x")) {
        std::string changed;
        REQUIRE(ini.GetStringEntry(section.c_str(), name.c_str(), changed));
        REQUIRE(changed == value + "x");
    }
    if (ini.DeleteEntry(section.c_str(), name.c_str())) {
        REQUIRE(!ini.EntryExists(section.c_str(), name.c_str()));
    }
}

void change_everything(MIniData& ini) {
    std::vector<std::string> sections;
    std::vector<std::string> entries;
    ini.GetSectionNames(sections);
    for (const std::string& section : sections) {
        ini.GetEntryNames(section.c_str(), entries);
        for (const std::string& name : entries) {
            if (ini.EntryExists(section.c_str(), name.c_str())) get_set_and_delete(ini, section, name);
        }
        ini.RenameSection(section.c_str(), "renamed");
        ini.DeleteSection(section);
    }
    content_of(ini);
}

void take_as_file(std::string_view text, unsigned flags) {
    MemoryFiles files(text);
    MIniData ini(flags);
    if (!ini.Open("x.ini")) return;
    save_and_reload(ini);
    change_everything(ini);
}

void take_as_text(std::string_view text, unsigned flags) {
    MIniData ini(flags);
    if (!ini.SetContentString(std::string(text))) return;
    const std::string content = content_of(ini);
    MIniData again(flags);
    REQUIRE(again.SetContentString(content));
    REQUIRE(again == ini);
    change_everything(again);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned flags = data[0] & flag_bits;
    take_as_file(text_of(data + 1, size - 1), flags);
    take_as_text(text_of(data + 1, size - 1), flags);
    recording::reset();
    return 0;
}
