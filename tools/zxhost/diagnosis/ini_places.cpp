#include "ini_places.h"

#include <algorithm>

#include "errtrace.h"
#include "fastfile.h"

namespace zxhost {

IniPlaces::IniPlaces(const MIniData& ini) : m_ini(ini) {
    const MErrTraceContext context("ini_places.cpp");  // what fails here was told before
    MFastFileReader reader;
    if (!reader.Open(ini.GetFilename())) return;
    std::string text;
    for (std::size_t number = 1; !reader.IsEOF() && reader.ReadLine(text); ++number) {
        if (number == 1 && text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
        if (text.empty() || text.front() == '\0') continue;
        if (text.front() == '[') m_headers.try_emplace(text, m_lines.size());
        m_lines.push_back({number, text});
    }
}

// The index of a section's first line. No other line reads like it: it would be the same section again.
std::size_t IniPlaces::find_header(const std::string& text) const {
    const auto found = m_headers.find(text);
    return found == m_headers.end() ? m_lines.size() : found->second;
}

std::size_t IniPlaces::line_of(const std::string& section) const {
    const MIniDataSection* const found = m_ini.GetSection(section.c_str());
    if (!found) return 0;
    const std::size_t index = find_header(found->text);
    return index < m_lines.size() ? m_lines[index].number : 0;
}

std::size_t IniPlaces::line_of(const std::string& section, const std::string& entry) const {
    const MIniDataSection* const found = m_ini.GetSection(section.c_str());
    const MIniDataEntry* const wanted = found ? found->GetEntry(entry.c_str()) : nullptr;
    if (!wanted) return 0;
    const auto& lines = found->line_vec;
    const auto at = static_cast<std::size_t>(std::find(lines.begin(), lines.end(), wanted) - lines.begin());
    const std::size_t index = find_header(found->text) + at;
    return index < m_lines.size() ? m_lines[index].number : 0;
}

// The line behind those that the model has; null if that is none.
const IniPlaces::Line* IniPlaces::stop() const {
    std::string text;
    m_ini.GetContentString(text);
    const auto taken = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    return taken < m_lines.size() ? &m_lines[taken] : nullptr;
}

std::size_t IniPlaces::stopped_at() const {
    const Line* const line = stop();
    return line ? line->number : 0;
}

std::string IniPlaces::last_section() const {
    std::vector<std::string> names;
    m_ini.GetSectionNames(names);
    const auto last = std::max_element(
        names.begin(), names.end(), [this](const auto& a, const auto& b) { return line_of(a) < line_of(b); });
    return last == names.end() ? "" : *last;
}

// The model itself tells which name the line would have: it reads it alone.
std::size_t IniPlaces::first_of_that_name() const {
    const Line* const line = stop();
    if (!line) return 0;
    const MErrTraceContext context("ini_places.cpp");
    MIniData alone;
    std::vector<std::string> names;
    if (line->text.front() == '[') {
        if (!alone.SetContentString(line->text)) return 0;
        alone.GetSectionNames(names);
        return names.empty() ? 0 : line_of(names.front());
    }
    if (!alone.SetContentString("[]\n" + line->text)) return 0;
    alone.GetEntryNames("", names);
    return names.empty() ? 0 : line_of(last_section(), names.front());
}

}  // namespace zxhost
