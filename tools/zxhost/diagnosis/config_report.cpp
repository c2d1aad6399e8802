#include "config_report.h"

#include <fmt/format.h>

#include <algorithm>

#include "MIniData.h"
#include "config_values.h"
#include "configfile.h"
#include "errtrace.h"
#include "fileops.h"
#include "ini_places.h"
#include "near_names.h"
#include "os/path.h"

namespace zxhost {
namespace {

constexpr std::size_t most_strays = 100;

std::string full_name(const std::string& section, const std::string& key) {
    return fmt::format("[{}] {}", section, key);
}

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
        take_values();
        if (!m_report.taken.empty()) look_for_strays();
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
            add(file, 0, "can't be read, so it counts as missing: is it a file, and may this user read it?");
            return;
        }
        std::string text = error;
        if (const std::size_t first = places.first_of_that_name())
            text += fmt::format(", first in line {}", first);
        add(file, places.stopped_at(), text + ": the whole file counts as missing");
    }

    void pass_over(const std::string& path) {
        const std::string file = os::native_path(path);
        if (file == m_report.taken) return;
        m_report.looked_at.push_back({file, "not looked at"});
        if (file_exists(path.c_str()))
            add(file, 0, "is there and isn't looked at: " + m_report.taken + " is taken");
    }

    void take_values() {
        for (const configfile::Key& key : configfile::keys) {
            ConfigValue value;
            value.section = key.section;
            value.key = key.name;
            if (!m_report.taken.empty() && m_ini.GetStringEntry(key.section, key.name, value.written)) {
                value.file = m_report.taken;
                value.line = IniPlaces(m_ini).line_of(key.section, key.name);
            }
            m_report.values.push_back(std::move(value));
        }
        for (const ValueNote& note : explain_values(m_report.values))
            add(note.value->file, note.value->line, note.text);
    }

    // Sections and keys that the driver doesn't read.
    void look_for_strays() {
        const IniPlaces places(m_ini);
        std::vector<std::string> sections;
        m_ini.GetSectionNames(sections);
        for (const std::string& section : sections) {
            std::vector<std::string> names;
            m_ini.GetEntryNames(section.c_str(), names);
            for (const std::string& name : names)
                if (const std::string text = stray_text(section, name); !text.empty() && !is_enough())
                    add(m_report.taken, places.line_of(section, name), text);
            if (const std::string text = stray_section_text(section);
                names.empty() && !text.empty() && !is_enough())
                add(m_report.taken, places.line_of(section), text);
        }
        if (m_strays > most_strays)
            add(m_report.taken, 0, fmt::format("{} more aren't read by the driver", m_strays - most_strays));
    }

    // Counts a stray; nobody reads more than so many.
    bool is_enough() { return ++m_strays > most_strays; }

    // Empty for a key that the driver reads.
    static std::string stray_text(const std::string& section, const std::string& name) {
        const configfile::Key* best = nullptr;
        std::string reason;
        int best_rank = 0;
        for (const configfile::Key& key : configfile::keys) {
            const Nearness of_section = nearness(section, key.section);
            const Nearness of_name = nearness(name, key.name);
            if (of_section == Nearness::same && of_name == Nearness::same) return "";
            if (of_name == Nearness::far) continue;
            const int rank = 1 + (of_section != Nearness::far) + (of_name == Nearness::same);
            if (rank <= best_rank) continue;
            best = &key;
            best_rank = rank;
            reason = of_section == Nearness::far ? fmt::format("it counts in [{}] alone", key.section)
                                                 : why(of_name == Nearness::same ? of_section : of_name);
        }
        const std::string not_read = full_name(section, name) + " isn't read by the driver";
        if (!best) return not_read;
        return fmt::format("{}: did you mean {}? {}", not_read, full_name(best->section, best->name), reason);
    }

    static std::string stray_section_text(const std::string& section) {
        for (const configfile::Key& key : configfile::keys) {
            const Nearness near = nearness(section, key.section);
            if (near == Nearness::same) return "";
            if (near != Nearness::far)
                return fmt::format("[{}] isn't read by the driver: did you mean [{}]? {}", section,
                                   key.section, why(near));
        }
        return "";
    }

    static std::string why(Nearness nearness) {
        if (nearness == Nearness::case_differs) return "capitals count";
        if (nearness == Nearness::blanks_differ) return "blanks and dashes count";
        return "the spelling counts";
    }

    void add(const std::string& file, std::size_t line, const std::string& text) {
        m_report.findings.push_back({file, line, text});
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
