#include <array>
#include <cstdio>
#include <regex>
#include <sstream>
#include <stdexcept>

#include "linkage.h"

namespace {

std::string output_of(const std::string& command) {
    FILE* const pipe = popen(command.c_str(), "r");
    if (!pipe) throw std::runtime_error("can't start " + command);
    std::string output;
    std::array<char, 4096> piece{};
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), pipe))
        output.append(piece.data(), size);
    if (pclose(pipe) != 0) throw std::runtime_error(command + " failed");
    return output;
}

}  // namespace

Names exported_names(const std::string& file) {
    std::istringstream lines(output_of("nm -D --defined-only '" + file + "'"));
    Names names;
    for (std::string line; std::getline(lines, line);) names.insert(line.substr(line.rfind(' ') + 1));
    return names;
}

Names needed_libraries(const std::string& file) {
    const std::string text = output_of("readelf --wide --dynamic '" + file + "'");
    const std::regex needed(R"(\(NEEDED\).*\[(.*)\])");
    Names names;
    for (std::sregex_iterator entry(text.begin(), text.end(), needed), end; entry != end; ++entry)
        names.insert((*entry)[1]);
    return names;
}
