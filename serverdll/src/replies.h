// Data lines of an answer, taken apart. Each function reads one whole line; false if it is something else.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "czendrixcom.h"

namespace serverdll {

// Calls `line` with each of the bodies; false as soon as it says so.
template <typename Line>
bool each_line(std::string_view data, Line&& line) {
    while (!data.empty()) {
        const std::size_t end = data.find('\n');
        if (!line(data.substr(0, end))) return false;
        data.remove_prefix(end + 1);
    }
    return true;
}

bool read_name(std::string_view line, std::string& name);
bool read_name_and_text(std::string_view line, std::string& name, std::string& text);
bool read_name_and_value(std::string_view line, std::string& name, double& value);
bool read_name_and_id(std::string_view line, std::string& name, long& id);
bool read_flag(std::string_view line, bool& flag);
// Exactly `count` numbers.
bool read_numbers(std::string_view line, double* values, std::size_t count);
bool read_axis(std::string_view line, CAxis& axis);
bool read_probe(std::string_view line, CProbe& probe);
bool read_probesystem(std::string_view line, CProbesystemEntry& entry);
bool read_probesystem_type(std::string_view line, Probesystemtype& type);

}  // namespace serverdll
