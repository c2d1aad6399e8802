#include "magazine_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "MIniData.h"
#include "errtrace.h"
#include "exit_status.h"
#include "forwarding_machine.h"
#include "ini_places.h"
#include "mmachmagazinedb.h"

namespace zxhost {
namespace {

constexpr const char* source = "magazine_check.cpp";
constexpr const char* free_section = "HISTORY";

// Knows every probe system, and remembers the one that it was asked for.
class AgreeableMachine : public ForwardingMachine {
public:
    using ForwardingMachine::ForwardingMachine;
    bool IsProbesystemDefined(const std::string& name) override {
        asked_name = name;
        return true;
    }
    bool IsProbesystemIdDefined(const std::string&, long id) override {
        asked_id = id;
        return true;
    }

    std::string asked_name;
    long asked_id = 0;
};

// The database itself says what it makes of one section alone.
class SectionJudge : private MMachMagazineDB {
public:
    explicit SectionJudge(MMachAbstract& machine) : MMachMagazineDB(&machine, "") {}

    bool takes(const std::string& content) {
        const MErrTraceContext context(source);  // the verdict tells it in its own words
        return inidata.SetContentString(content) && analyse_inifile();
    }

    // Of the section that it took last.
    std::uint32_t slot() const { return magazines.begin()->second.begin()->first; }
};

std::string text_of(const MIniDataSection& section) {
    std::string text;
    for (const MIniDataLine* line : section.line_vec) text += line->text + "\n";
    return text;
}

class Checker {
public:
    Checker(const MIniData& ini, MMachAbstract& machine)
        : m_ini(ini), m_places(ini), m_machine(machine), m_everything(machine) {}

    MagazineVerdict check() {
        const std::vector<std::string> names = names_in_order();
        // Where the model stopped in the middle of the file, nobody knows what else is in its last section.
        const std::size_t count = names.size() - (m_ini.IsOpen() || names.empty() ? 0 : 1);
        for (std::size_t i = 0; i < count; ++i)
            if (names[i] != free_section && !check_section(names[i])) break;
        return std::move(m_verdict);
    }

private:
    using Slot = std::pair<std::string, std::uint32_t>;  // probe system and id as one text, number

    std::vector<std::string> names_in_order() const {
        std::vector<std::string> names;
        m_ini.GetSectionNames(names);
        std::vector<std::pair<std::size_t, std::string>> places;
        for (std::string& name : names) {
            const std::size_t line = m_places.line_of(name);
            places.emplace_back(line, std::move(name));
        }
        std::sort(places.begin(), places.end());
        names.clear();
        for (auto& [line, name] : places) names.push_back(std::move(name));
        return names;
    }

    // False if it is the first one that is wrong.
    bool check_section(const std::string& name) {
        const std::size_t line = m_places.line_of(name);
        const std::string why = fault_of(name);
        if (!why.empty()) {
            m_verdict.fault = {line, fmt::format("[{}]: {}", name, why)};
            return false;
        }
        ++m_verdict.slots;
        m_lines.emplace(slot_of_last(), line);
        remark_on_name(name, line);
        return true;
    }

    Slot slot_of_last() const {
        return {fmt::format("{}_{}", m_everything.asked_name, m_everything.asked_id), m_judge.slot()};
    }

    // What is wrong with it; empty if it is good.
    std::string fault_of(const std::string& name) {
        const MIniDataSection& section = *m_ini.GetSection(name.c_str());
        const std::string programs = "\nload.program=\nunload.program=\n";
        if (!m_judge.takes(section.text + programs))
            return "the name of a section is PROBESYSTEM_ID_slotNUMBER";
        const std::string why = unknown_system(m_everything.asked_name, m_everything.asked_id);
        if (!why.empty()) return why;
        for (const char* program : {"load.program", "unload.program"})
            if (!m_ini.EntryExists(name.c_str(), program)) return fmt::format("{} is missing", program);
        if (!m_judge.takes(text_of(section))) return "the database doesn't take it";
        const auto earlier = m_lines.find(slot_of_last());
        return earlier == m_lines.end() ? ""
                                        : fmt::format("this slot stands in line {} already", earlier->second);
    }

    std::string unknown_system(const std::string& name, long id) {
        if (!m_machine.IsProbesystemDefined(name))
            return fmt::format("this machine has no probe system '{}'", name);
        if (!m_machine.IsProbesystemIdDefined(name, id))
            return fmt::format("this machine has no probe system '{}' with id {}", name, id);
        return "";
    }

    void remark_on_name(const std::string& name, std::size_t line) {
        constexpr std::size_t longest = 90;  // of a probe system's name within a section's
        const std::string own = fmt::format("{}_{}_slot{}", m_everything.asked_name.substr(0, longest),
                                            m_everything.asked_id, m_judge.slot());
        if (own != name)
            m_verdict.remarks.push_back(
                {line, fmt::format("[{}]: a change of this slot would go to a new section [{}]", name, own)});
    }

    const MIniData& m_ini;
    const IniPlaces m_places;
    MMachAbstract& m_machine;
    AgreeableMachine m_everything;
    SectionJudge m_judge{m_everything};
    std::map<Slot, std::size_t> m_lines;
    MagazineVerdict m_verdict;
};

[[noreturn]] void unreadable(const std::string& file, const std::string& why) {
    throw HostError(ExitStatus::WrongUsage, "the magazine file " + file + " " + why,
                    "name a file as docs/formats/magazine.md tells it");
}

// The ini model stopped at a line.
MagazineFinding broken_line(const MIniData& ini) {
    const IniPlaces places(ini);
    std::string text = ini.GetLastError();
    if (const std::size_t first = places.first_of_that_name())
        text += fmt::format(", first in line {}", first);
    return {places.stopped_at(), text};
}

}  // namespace

MagazineVerdict check_magazine(const std::string& file, MMachAbstract& machine) {
    const MErrTraceContext context(source);
    MIniData ini;
    MagazineVerdict verdict;
    if (!ini.Open(file)) {
        if (!*ini.GetLastError()) unreadable(file, "can't be read");
        verdict = Checker(ini, machine).check();
        if (!verdict.fault) verdict.fault = broken_line(ini);
        return verdict;
    }
    if (ini.IsNew()) unreadable(file, "isn't there");
    verdict = Checker(ini, machine).check();
    MMachMagazineDB database(&machine, file);
    if (!verdict.fault && !database.Open()) verdict.fault = {0, "the database doesn't take it"};
    return verdict;
}

}  // namespace zxhost
