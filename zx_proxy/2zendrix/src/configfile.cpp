#include "configfile.h"

#include "stl_utilities.h"

namespace configfile {
namespace {

constexpr const char* own_name = "m2zendrix";

void trim_blanks(std::string& text) {
    text.erase(0, text.find_first_not_of(" \t"));
    text.erase(text.find_last_not_of(" \t") + 1);
}

}  // namespace

std::string first_path(const std::string& directory, const std::string& name) {
    return directory + "\\" + name + ".ini";
}

std::string second_path(const std::string& directory, const std::string& name) {
    return directory + "\\" + (name == own_name ? "" : name + "\\") + own_name + ".ini";
}

bool is_library(const std::string& value) { return value.find(".dll") != std::string::npos; }

void strip_host(std::string& value) {
    if (!is_library(value)) return stl_string_strip(value);
    stl_string_strip_comment(value);
    trim_blanks(value);
}

std::vector<std::string> axes_of(std::string value) {
    stl_string_strip(value);
    std::vector<std::string> names;
    stl_string_tokenize(value, ",", names);
    for (std::string& name : names) trim_blanks(name);
    return names;
}

}  // namespace configfile
