// The driver's configuration file: where it stands, and how its values are read. The driver reads it through
// these, and so does a tool that explains it.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace configfile {

struct Key {
    const char* section;
    const char* name;
};

// All that the driver reads; names are compared exactly.
inline constexpr Key host{"connection", "host"};
inline constexpr Key port{"connection", "port"};
inline constexpr Key cached_axes{"Settings", "cached_axes"};
inline constexpr std::array keys{host, port, cached_axes};

// The two places, in this order. `name` is the configuration's.
std::string first_path(const std::string& directory, const std::string& name);
std::string second_path(const std::string& directory, const std::string& name);

// Does this value of "host" name a library? All of it is looked at, its comment too.
bool is_library(const std::string& value);

// Takes off the comment, and of a library's path the blanks and tabs at both ends, of all else every white
// space. Variables in a library's path are another step.
void strip_host(std::string& value);

// The names in a value of "cached_axes".
std::vector<std::string> axes_of(std::string value);

}  // namespace configfile
