#include "machine/inisection.h"

#include <utility>

#include "append_number.h"
#include "numbers.h"
#include "stl_utilities.h"

namespace zendrix::sim {

namespace {

std::string range_text(double low, double high) {
    std::string text = "a number from";
    append_number(text, low);
    text += " to";
    append_number(text, high);
    return text;
}

}  // namespace

IniSection::IniSection(const MIniData& ini, std::string file, std::string section)
    : m_ini(ini), m_file(std::move(file)), m_section(std::move(section)) {}

bool IniSection::fetch(const char* key, std::string& value) {
    m_known.insert(key);
    if (!m_ini.GetStringEntry(m_section.c_str(), key, value)) return false;
    const std::size_t begin = value.find_first_not_of(" \t");
    const std::size_t end = value.find_last_not_of(" \t");
    value = begin == std::string::npos ? std::string() : value.substr(begin, end - begin + 1);
    return true;
}

bool IniSection::has(const char* key) { return m_ini.EntryExists(m_section.c_str(), key); }

void IniSection::text(const char* key, std::string& value) {
    std::string found;
    if (fetch(key, found)) value = found;
}

void IniSection::number(const char* key, double& value, double low, double high) {
    std::string found;
    if (!fetch(key, found)) return;
    double parsed = 0.0;
    if (!wire::parse_number(found, parsed) || !(parsed >= low && parsed <= high)) {
        complain(key, "\"" + found + "\" is not " + range_text(low, high));
    }
    value = parsed;
}

void IniSection::integer(const char* key, std::int64_t& value, std::int64_t low, std::int64_t high) {
    std::string found;
    if (!fetch(key, found)) return;
    if (!wire::parse_integer(found, low, high, value)) {
        complain(key, "\"" + found + "\" is not a whole number from " + std::to_string(low) + " to " +
                          std::to_string(high));
    }
}

void IniSection::flag(const char* key, bool& value) {
    std::int64_t number = value ? 1 : 0;
    integer(key, number, 0, 1);
    value = number == 1;
}

void IniSection::numbers(const char* key, std::vector<double>& values) {
    std::string found;
    if (!fetch(key, found)) return;
    std::vector<std::string> pieces;
    stl_string_tokenize(found, " \t", pieces);
    for (const std::string& piece : pieces) {
        double parsed = 0.0;
        if (!wire::parse_number(piece, parsed)) complain(key, "\"" + piece + "\" is not a number");
        values.push_back(parsed);
    }
}

std::vector<std::string> IniSection::keys() const {
    std::vector<std::string> names;
    m_ini.GetEntryNames(m_section.c_str(), names);
    return names;
}

void IniSection::no_more_keys() const {
    for (const std::string& key : keys()) {
        if (!m_known.contains(key)) complain(key, "no such key");
    }
}

void IniSection::complain(std::string_view key, const std::string& what) const {
    std::string text = m_file + ": [" + m_section + "]";
    if (!key.empty()) text.append(" ").append(key);
    throw DescriptionError(text + ": " + what);
}

}  // namespace zendrix::sim
