#include "mmachmagazinedb.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "errtrace.h"
#include "mmachabstract.h"

namespace {

constexpr const char* source = "zendrix/server/machine/src/mmachmagazinedb";
constexpr const char* analysis = "MMachMagazineDB::analyse_inifile";
constexpr const char* history_section = "HISTORY";
constexpr const char* probe_entry = "probe";

using NameBuffer = std::array<char, 128>;

// The names that these two give are overwritten by the thread's next call.

const char* probesystem_key(const std::string& name, std::uint32_t id) {
    static thread_local NameBuffer buffer;
    std::snprintf(buffer.data(), buffer.size(), "%.100s_%u", name.c_str(), id);
    return buffer.data();
}

const char* slot_section(const std::string& name, std::uint32_t id, std::uint32_t slot) {
    static thread_local NameBuffer buffer;
    std::snprintf(buffer.data(), buffer.size(), "%.90s_%u_slot%u", name.c_str(), id, slot);
    return buffer.data();
}

bool split_section_name(const std::string& section, std::string& name, std::uint32_t& id,
                        std::uint32_t& slot) {
    constexpr const char* function = "split_section_name";
    const std::size_t last = section.rfind('_');
    if (last == std::string::npos) {
        MERRTRACE_REPORT(source, "%s(): no '_' found in %.60s", function, section.c_str());
        return false;
    }
    // Before position 0 the search begins at the end again.
    const std::size_t second = section.rfind('_', last - 1);
    if (second == std::string::npos) {
        MERRTRACE_REPORT(source, "%s(): no second '_' found in %.60s", function, section.c_str());
        return false;
    }
    name = section.substr(0, second);
    if (std::sscanf(section.c_str() + second + 1, "%u_slot%u", &id, &slot) < 2) {
        MERRTRACE_REPORT(source, "%s(): could not parse '%%u_slot%%u' in %.60s", function, section.c_str());
        return false;
    }
    return true;
}

std::string unquote(const std::string& text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

long as_entry(std::uint32_t probe) { return static_cast<std::int32_t>(probe); }

template <class Magazine>
auto find_probe(Magazine& magazine, std::uint32_t probe) {
    return std::find_if(magazine.begin(), magazine.end(),
                        [probe](const auto& slot) { return slot.second.probe == probe; });
}

}  // namespace

// Saved by renaming: a save that fails must leave the old file whole.
MMachMagazineDB::MMachMagazineDB(MMachAbstract* machine, const std::string& path)
    : filename(path), inidata(MINIDATA_SAVE_BY_RENAME), mach(machine) {}

bool MMachMagazineDB::Open() {
    m_isFileRead = read_file();
    return m_isFileRead;
}

bool MMachMagazineDB::read_file() {
    constexpr const char* function = "MMachMagazineDB::Open";
    if (!inidata.Open(filename)) {
        MERRTRACE_REPORT(source, "%s(): inidata.Open(\"%.50s\") failed", function, filename.c_str());
        return false;
    }
    if (!analyse_inifile()) {
        MERRTRACE_REPORT(source, "%s(): analyse_inifile() failed", function);
        magazines.clear();
        return false;
    }
    return true;
}

bool MMachMagazineDB::Send(const std::string& content) {
    if (take_content(content)) {
        m_isFileRead = true;
        return true;
    }
    if (!Open()) MERRTRACE_REPORT(source, "%s(): Open() failed", "MMachMagazineDB::Send");
    return false;
}

bool MMachMagazineDB::take_content(const std::string& content) {
    constexpr const char* function = "MMachMagazineDB::Send";
    if (!inidata.SetContentString(content)) {
        MERRTRACE_REPORT(source, "%s(): SetContentString() failed", function);
        return false;
    }
    if (!analyse_inifile()) {
        MERRTRACE_REPORT(source, "%s(): analyse_inifile() failed", function);
        magazines.clear();
        return false;
    }
    if (!inidata.Save()) {
        MERRTRACE_REPORT(source, "%s(): Save() failed", function);
        return false;
    }
    return true;
}

bool MMachMagazineDB::SetSlot(std::uint32_t slot, std::uint32_t probe) {
    constexpr const char* function = "MMachMagazineDB::SetSlot";
    const Probesystem active = active_probesystem();
    const char* const key = probesystem_key(active.name, active.id);
    const auto magazine = magazines.find(key);
    if (magazine == magazines.end()) {
        MERRTRACE_REPORT(source, "%s(): probesystem %s not found", function, key);
        return false;
    }
    const auto found = magazine->second.find(slot);
    if (found == magazine->second.end()) {
        MERRTRACE_REPORT(source, "%s(): slot number %u not found", function, slot);
        return false;
    }
    found->second.probe = probe;
    if (!inidata.SetLongEntry(slot_section(active.name, active.id, slot), probe_entry, as_entry(probe))) {
        MERRTRACE_REPORT(source, "%s(): inidata.SetLongEntry() failed", function);
        resync_inifile();
        return false;
    }
    if (!inidata.Save()) {
        MERRTRACE_REPORT(source, "%s(): inidata.Save() failed", function);
        resync_inifile();
        return false;
    }
    return true;
}

std::uint32_t MMachMagazineDB::GetSlotOfProbe(std::uint32_t probe) const {
    const Magazine* const magazine = active_magazine();
    if (!magazine) return 0;
    const auto found = find_probe(*magazine, probe);
    return found == magazine->end() ? 0 : found->first;
}

bool MMachMagazineDB::IsSlotDefined(std::uint32_t slot) const { return find_active_slot(slot) != nullptr; }

std::string MMachMagazineDB::GetLoadProgram(std::uint32_t slot) const {
    const MMachMagazineSlot* const found = find_active_slot(slot);
    return found ? unquote(found->load_program) : std::string();
}

std::string MMachMagazineDB::GetUnloadProgram(std::uint32_t slot) const {
    const MMachMagazineSlot* const found = find_active_slot(slot);
    return found ? unquote(found->unload_program) : std::string();
}

std::string MMachMagazineDB::GetChangeProgram(std::uint32_t from, std::uint32_t to) const {
    const Magazine* const magazine = active_magazine();
    if (!magazine) return {};
    const auto first = magazine->find(from);
    if (first == magazine->end()) return {};
    const auto change = first->second.change_programs.find(to);
    if (change != first->second.change_programs.end()) return unquote(change->second);
    const auto second = magazine->find(to);
    if (second == magazine->end()) return {};
    std::string text = unquote(first->second.unload_program + ";" + second->second.load_program);
    const std::size_t quotes = text.find("\"\"");
    if (quotes != std::string::npos) text.replace(quotes, 2, ";");
    return text;
}

std::map<std::uint32_t, std::uint32_t> MMachMagazineDB::GetSlots(const std::string& name,
                                                                 std::uint32_t id) const {
    const bool of_active = name.empty() && id == 0;
    const Magazine* const magazine = of_active ? active_magazine() : find_magazine({name, id});
    std::map<std::uint32_t, std::uint32_t> slots;
    if (!magazine) return slots;
    for (const auto& [number, slot] : *magazine) slots.emplace(number, slot.probe);
    return slots;
}

bool MMachMagazineDB::DeleteProbe(std::uint32_t probe) {
    constexpr const char* function = "MMachMagazineDB::DeleteProbe";
    const Probesystem active = active_probesystem();
    const auto magazine = magazines.find(probesystem_key(active.name, active.id));
    if (magazine == magazines.end()) return true;
    const auto found = find_probe(magazine->second, probe);
    if (found == magazine->second.end()) return true;

    bool result = true;
    found->second.probe = 0;
    const char* const section = slot_section(active.name, active.id, found->first);
    if (!inidata.SetLongEntry(section, probe_entry, 0)) {
        MERRTRACE_REPORT(source, "%s(): inidata.SetLongEntry(%.40s,\"%s\") failed", function, section,
                         probe_entry);
        result = false;
    }
    if (!inidata.Save()) {
        MERRTRACE_REPORT(source, "%s(): inidata.Save() failed", function);
        result = false;
    }
    if (!result) resync_inifile();
    return result;
}

bool MMachMagazineDB::DeleteProbesystem(const std::string& name, std::uint32_t id) {
    const auto magazine = magazines.find(probesystem_key(name, id));
    if (magazine == magazines.end()) return true;
    bool result = delete_sections({name, id}, magazine->second);
    if (!inidata.Save()) {
        MERRTRACE_REPORT(source, "%s(): inidata.Save() failed", "MMachMagazineDB::DeleteProbesystem");
        result = false;
    }
    magazines.erase(magazine);
    if (!result) resync_inifile();
    return result;
}

bool MMachMagazineDB::delete_sections(const Probesystem& probesystem, const Magazine& magazine) {
    bool result = true;
    for (const auto& [number, slot] : magazine) {
        const char* const section = slot_section(probesystem.name, probesystem.id, number);
        if (inidata.DeleteSection(section)) continue;
        MERRTRACE_REPORT(source, "%s(): inidata.DeleteSection(%.40s) failed",
                         "MMachMagazineDB::DeleteProbesystem", section);
        result = false;
    }
    return result;
}

MMachMagazineDB::Probesystem MMachMagazineDB::active_probesystem() const {
    std::string name = mach->GetActiveProbesystemName();
    return {std::move(name), static_cast<std::uint32_t>(mach->GetActiveProbesystemIdNum())};
}

const MMachMagazineDB::Magazine* MMachMagazineDB::find_magazine(const Probesystem& probesystem) const {
    const auto found = magazines.find(probesystem_key(probesystem.name, probesystem.id));
    return found == magazines.end() ? nullptr : &found->second;
}

const MMachMagazineSlot* MMachMagazineDB::find_active_slot(std::uint32_t slot) const {
    const Magazine* const magazine = active_magazine();
    if (!magazine) return nullptr;
    const auto found = magazine->find(slot);
    return found == magazine->end() ? nullptr : &found->second;
}

// What the walk had found stays after a failure; the caller decides.
bool MMachMagazineDB::analyse_inifile() {
    magazines.clear();
    std::vector<std::string> sections;
    inidata.GetSectionNames(sections);
    return std::all_of(sections.begin(), sections.end(), [this](const std::string& section) {
        return section == history_section || analyse_section(section);
    });
}

bool MMachMagazineDB::analyse_section(const std::string& section) {
    Probesystem probesystem;
    std::uint32_t number = 0;
    if (!split_section_name(section, probesystem.name, probesystem.id, number)) {
        MERRTRACE_REPORT(source, "%s(): split_section_name(\"%.50s\") failed", analysis, section.c_str());
        return false;
    }
    if (!is_defined(probesystem)) return false;
    Magazine& magazine = magazines[probesystem_key(probesystem.name, probesystem.id)];
    if (magazine.contains(number)) {
        MERRTRACE_REPORT(source, "%s(): Slot %u exists more than once for \"%.50s\" %u", analysis, number,
                         probesystem.name.c_str(), probesystem.id);
        return false;
    }
    MMachMagazineSlot slot;
    if (!read_slot(section, slot)) return false;
    magazine.emplace(number, std::move(slot));
    return true;
}

bool MMachMagazineDB::is_defined(const Probesystem& probesystem) const {
    if (!mach->IsProbesystemDefined(probesystem.name)) {
        MERRTRACE_REPORT(source, "%s(): Probesystem \"%.50s\" not defined", analysis,
                         probesystem.name.c_str());
        return false;
    }
    if (!mach->IsProbesystemIdDefined(probesystem.name, static_cast<long>(probesystem.id))) {
        MERRTRACE_REPORT(source, "%s(): Probesystem id %u not defined for \"%.50s\"", analysis,
                         probesystem.id, probesystem.name.c_str());
        return false;
    }
    return true;
}

bool MMachMagazineDB::read_slot(const std::string& section, MMachMagazineSlot& slot) const {
    if (!read_program(section, "load.program", slot.load_program) ||
        !read_program(section, "unload.program", slot.unload_program)) {
        return false;
    }
    long probe = 0;
    inidata.GetLongEntry(section.c_str(), probe_entry, probe);
    slot.probe = static_cast<std::uint32_t>(probe);
    return read_change_programs(section, slot);
}

bool MMachMagazineDB::read_program(const std::string& section, const char* entry,
                                   std::string& program) const {
    if (inidata.GetStringEntry(section.c_str(), entry, program)) return true;
    MERRTRACE_REPORT(source, "%s(): Entry %s is missing in section \"%.50s\"", analysis, entry,
                     section.c_str());
    return false;
}

bool MMachMagazineDB::read_change_programs(const std::string& section, MMachMagazineSlot& slot) const {
    std::vector<std::string> names;
    inidata.GetEntryNames(section.c_str(), names);
    for (const std::string& name : names) {
        std::uint32_t target = 0;
        // The count is 1 as soon as the number is read: what stands behind it doesn't matter.
        if (std::sscanf(name.c_str(), "change_to_%u.program", &target) != 1) continue;
        std::string program;
        if (!inidata.GetStringEntry(section.c_str(), name.c_str(), program)) {
            // Sic: without the closing parenthesis.
            MERRTRACE_REPORT(source, "%s(): GetStringEntry(\"%.40s\", \"%.40s\" failed", analysis,
                             section.c_str(), name.c_str());
            return false;
        }
        slot.change_programs[target] = program;
    }
    return true;
}

void MMachMagazineDB::resync_inifile() {
    constexpr const char* function = "MMachMagazineDB::resync_inifile";
    const bool reloaded = inidata.Reload();
    if (!reloaded) MERRTRACE_REPORT(source, "%s(): inidata.Reload() failed", function);
    const bool analysed = analyse_inifile();
    if (!analysed) MERRTRACE_REPORT(source, "%s(): analyse_inifile() failed", function);
    m_isFileRead = reloaded && analysed;
}
