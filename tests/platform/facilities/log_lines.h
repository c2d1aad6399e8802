// The texts of a log's lines, without the time and the thread before each.
#pragma once

#include <sstream>
#include <string>
#include <vector>

inline std::vector<std::string> log_lines(const std::string& content) {
    std::vector<std::string> lines;
    std::istringstream stream(content);
    for (std::string line; std::getline(stream, line);) lines.push_back(line.substr(line.find("] ") + 2));
    return lines;
}
