#include "config_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "MIniData.h"
#include "config_values.h"
#include "configfile.h"
#include "errtrace.h"
#include "fileops.h"
#include "ini_places.h"
#include "os/path.h"
#include "strays.h"

namespace zxhost {
namespace {

constexpr std::size_t most_strays = 100;

class Reader {
public:
    Reader(const std::string& directory, const std::string& name)
        : m_first(configfile::first_path(directory, name)),
          m_second(configfile::second_path(directory, name)) {}

    ConfigReport read() {
        const MErrTraceContext context("config_report.cpp");  // the report tells it in its own words
        if (look_at(m_first))
            pass_over(m_second);
        else
            look_at(m_second);
        const IniPlaces places(m_ini);
        take_values(places);
        if (!m_report.taken.empty()) look_for_strays(places);
        std::stable_sort(m_report.findings.begin(), m_report.findings.end(),
                         [](const Finding& a, const Finding& b) { return a.line < b.line; });
        return std::move(m_report);
    }

private:
    bool look_at(const std::string& path) {
        const bool good = m_ini.Open(path);
        const std::string file = os::native_path(path);
        if (good && !m_ini.IsNew()) {
            m_report.taken = file;
            m_report.looked_at.push_back({file, "taken"});
            return true;
        }
        m_report.looked_at.push_back({file, good ? "missing" : "can't be read"});
        if (!good && !was_told(file)) tell_why(file);
        return false;
    }

    // Both places are the same for the driver's own name.
    bool was_told(const std::string& file) const {
        return std::any_of(m_report.findings.begin(), m_report.findings.end(),
                           [&](const Finding& finding) { return finding.file == file; });
    }

    void tell_why(const std::string& file) {
        const std::string error = m_ini.GetLastError();
        const IniPlaces places(m_ini);
        if (error.empty()) {
            add(FindingKind::unreadable, file, 0,
                "can't be read, so it counts as missing: is it a file, and may this user read it?");
            return;
        }
        std::string text = error;
        if (const std::size_t first = places.first_of_that_name())
            text += fmt::format(", first in line {}", first);
        add(FindingKind::unreadable, file, places.stopped_at(), text + ": the whole file counts as missing");
    }

    void pass_over(const std::string& path) {
        const std::string file = os::native_path(path);
        if (file == m_report.taken) return;
        m_report.looked_at.push_back({file, "not looked at"});
        if (file_exists(path.c_str()))
            add(FindingKind::shadowed, file, 0,
                "is there and isn't looked at: " + m_report.taken + " is taken");
    }

    void take_values(const IniPlaces& places) {
        for (const configfile::Key& key : configfile::keys) {
            ConfigValue value;
            value.section = key.section;
            value.key = key.name;
            if (!m_report.taken.empty() && m_ini.GetStringEntry(key.section, key.name, value.written)) {
                value.file = m_report.taken;
                value.line = places.line_of(key.section, key.name);
            }
            m_report.values.push_back(std::move(value));
        }
        for (const ValueNote& note : explain_values(m_report.values))
            add(FindingKind::value, note.value->file, note.value->line, note.text);
    }

    // Sections and keys that the driver doesn't read.
    void look_for_strays(const IniPlaces& places) {
        std::vector<std::string> sections;
        m_ini.GetSectionNames(sections);
        for (const std::string& section : sections) {
            std::vector<std::string> names;
            m_ini.GetEntryNames(section.c_str(), names);
            for (const std::string& name : names)
                if (const Stray stray = stray_entry(section, name); is_worth_telling(stray))
                    add(kind_of(stray), m_report.taken, places.line_of(section, name), stray.text);
            if (!names.empty()) continue;
            if (const Stray stray = stray_section(section); is_worth_telling(stray))
                add(kind_of(stray), m_report.taken, places.line_of(section), stray.text);
        }
        if (m_strays > most_strays)
            add(FindingKind::unknown, m_report.taken, 0,
                fmt::format("{} more aren't read by the driver", m_strays - most_strays));
    }

    // Nobody reads more than so many.
    bool is_worth_telling(const Stray& stray) { return !stray.text.empty() && ++m_strays <= most_strays; }

    // A name like ours in a section of somebody else's misses nothing if ours is there.
    FindingKind kind_of(const Stray& stray) const {
        const bool is_near = stray.meant && !(stray.counts_elsewhere &&
                                              m_ini.EntryExists(stray.meant->section, stray.meant->name));
        return is_near ? FindingKind::near_miss : FindingKind::unknown;
    }

    void add(FindingKind kind, const std::string& file, std::size_t line, const std::string& text) {
        m_report.findings.push_back({kind, file, line, text});
    }

    std::string m_first;
    std::string m_second;
    MIniData m_ini;
    ConfigReport m_report;
    std::size_t m_strays = 0;
};

}  // namespace

ConfigReport read_config(const std::string& directory, const std::string& name) {
    return Reader(directory, name).read();
}

}  // namespace zxhost
