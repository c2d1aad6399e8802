// What the driver makes of its configuration, and what it passes over in silence.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zxhost {

// A file that the driver looks at.
struct LookedAt {
    std::string file;
    std::string state;  // "taken", "missing", "can't be read", "not looked at"
};

// A value in force.
struct ConfigValue {
    std::string section;
    std::string key;
    std::string value;
    std::string file;      // where it comes from; empty: the driver's own
    std::size_t line = 0;  // counts with a file
    std::string written;   // as it stands in the file
    std::string lost;      // its comment
};

enum class FindingKind {
    unreadable,  // a file that counts as missing, though it is there
    shadowed,    // a file that isn't looked at
    near_miss,   // a name that isn't read, and is near one that would be
    unknown,     // a name that isn't read
    value        // a value that may not be what was meant
};

// Something that a person should look at.
struct Finding {
    FindingKind kind;
    std::string file;
    std::size_t line = 0;  // 0: the whole file
    std::string text;
};

struct ConfigReport {
    std::vector<LookedAt> looked_at;  // in the driver's order
    std::string taken;                // the file in force; empty: none
    std::vector<ConfigValue> values;  // of every key that the driver knows
    std::vector<Finding> findings;    // by file and line

    const std::string& host() const { return values[0].value; }
    const std::string& port() const { return values[1].value; }
};

// Looks as the driver does in Open, with the same directory and name.
ConfigReport read_config(const std::string& directory, const std::string& name);

}  // namespace zxhost
