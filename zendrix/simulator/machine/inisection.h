// One section of an ini file, read with complaints that name the file, the section and the key.
#pragma once

#include <cstdint>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "MIniData.h"

namespace zendrix::sim {

// What is wrong with a machine's description.
class DescriptionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class IniSection {
public:
    // `ini` outlives this; a section that isn't there has no keys.
    IniSection(const MIniData& ini, std::string file, std::string section);

    bool exists() const { return m_ini.SectionExists(m_section.c_str()); }
    bool has(const char* key);

    // Blanks around a value don't count. A key that isn't there leaves `value` as it is.
    void text(const char* key, std::string& value);
    void number(const char* key, double& value, double low, double high);
    void integer(const char* key, std::int64_t& value, std::int64_t low, std::int64_t high);
    void flag(const char* key, bool& value);  // 0 or 1
    void numbers(const char* key, std::vector<double>& values);

    std::vector<std::string> keys() const;

    // Complains about keys that nobody asked for.
    void no_more_keys() const;
    [[noreturn]] void complain(std::string_view key, const std::string& what) const;

private:
    bool fetch(const char* key, std::string& value);

    const MIniData& m_ini;
    std::string m_file;
    std::string m_section;
    std::set<std::string> m_known;
};

}  // namespace zendrix::sim
