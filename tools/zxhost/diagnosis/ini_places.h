// Where the parts of an ini model stand in their file: the model keeps its lines, without their numbers.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "MIniData.h"

namespace zxhost {

class IniPlaces {
public:
    // Reads the lines of the file that the model was opened on, as the model does. The model outlives this;
    // it may have stopped at a line that it couldn't take.
    explicit IniPlaces(const MIniData& ini);

    // Line numbers from 1; 0 if the model has no such thing.
    std::size_t line_of(const std::string& section) const;
    std::size_t line_of(const std::string& section, const std::string& entry) const;

    // For a model that couldn't be read to the end: the line where it stopped, and the line that has the same
    // name already (0 if that isn't the reason).
    std::size_t stopped_at() const;
    std::size_t first_of_that_name() const;

private:
    struct Line {
        std::size_t number;
        std::string text;
    };

    std::size_t find_header(const std::string& text) const;
    const Line* stop() const;
    std::string last_section() const;

    const MIniData& m_ini;
    std::vector<Line> m_lines;                               // those that the model keeps
    std::unordered_map<std::string, std::size_t> m_headers;  // the first of each text, by its index
};

}  // namespace zxhost
