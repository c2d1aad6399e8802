#include "vtable_layouts.h"

#include <array>
#include <cstdio>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace {

// What a command wrote; its errors are part of it.
std::string output_of(const std::string& command) {
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) throw std::runtime_error("can't start " + command);
    std::string output;
    std::array<char, 4096> piece{};
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), pipe)) {
        output.append(piece.data(), size);
    }
    if (pclose(pipe) != 0) throw std::runtime_error(command + "\n" + output);
    return output;
}

// Where clang finds this system's standard library. It forgets them for another system's target.
std::string system_folders() {
    std::istringstream lines(output_of(CLANG " -x c++ -E -v /dev/null"));
    std::string options;
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("End of search list")) inside = false;
        if (inside) options += " -isystem" + line;
        if (line.starts_with("#include <...>")) inside = true;
    }
    return options;
}

std::string options_for(Abi abi) {
    if (abi == Abi::itanium) return "";
    return " --target=x86_64-pc-windows-msvc -fno-ms-compatibility -U__SIZEOF_INT128__ -D_GNU_SOURCE"
           " -nostdinc -isystem " BOUNDARY_FOLDER "/microsoft" +
           system_folders();
}

std::string dump(Abi abi) {
    return output_of(CLANG " -std=c++20 -w" + options_for(abi) +
                     " @" INCLUDE_OPTIONS
                     " -S -emit-llvm -o /dev/null -Xclang -fdump-vtable-layouts " BOUNDARY_FOLDER
                     "/boundary_classes.cpp");
}

// The class of a heading like "Vtable for 'X' (6 entries)." or "VFTable for 'Base' in 'X' (4 entries)."
std::string class_of_heading(const std::string& line) {
    static const std::regex heading(R"(VF?[Tt]able for .*'([^']+)' \(\d+ entries\)\.)");
    std::smatch found;
    return std::regex_match(line, found, heading) ? found[1].str() : std::string();
}

std::string without_class(const std::string& signature) {
    static const std::regex qualifier(R"(\b(MMach|MOutput|M2Zendrix)\w*(<[^>]*>)?::)");
    static const std::regex remark(R"( \[[^\]]*\]$)");
    return std::regex_replace(std::regex_replace(signature, qualifier, ""), remark, "");
}

// Takes one line of a table, as "   7 | bool MMachAbstract::Open() [pure]".
void take_entry(const std::string& line, bool first, std::vector<Slots>& tables) {
    static const std::regex entry(R"(\s*\d+ \| (.*))");
    std::smatch found;
    if (!std::regex_match(line, found, entry)) return;
    const std::string text = found[1];
    const bool complete_destructor = text.ends_with("() [complete]");
    if (text.starts_with("offset_to_top") || text.ends_with(" RTTI")) {
        // An Itanium table is headed by both, a Microsoft one by the second alone.
        if (first || text.starts_with("offset_to_top")) tables.emplace_back();
    } else if (!complete_destructor) {
        const bool destructor = text.find('~') != std::string::npos;
        tables.back().push_back(destructor ? "destructor" : without_class(text));
    }
}

}  // namespace

Layouts vtable_layouts(Abi abi) {
    std::istringstream lines(dump(abi));
    Layouts layouts;
    std::vector<Slots>* tables = nullptr;
    bool first = false;
    for (std::string line; std::getline(lines, line);) {
        const std::string heading = class_of_heading(line);
        if (!heading.empty()) {
            tables = &layouts[heading];
            first = true;
        } else if (line.empty()) {
            tables = nullptr;
        } else if (tables) {
            take_entry(line, first, *tables);
            first = false;
        }
    }
    return layouts;
}
