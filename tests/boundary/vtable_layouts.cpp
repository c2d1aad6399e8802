#include "vtable_layouts.h"

#include <regex>
#include <sstream>

namespace {

std::string dump(Abi abi) {
    return clang_output(abi, "-S -emit-llvm -o /dev/null -Xclang -fdump-vtable-layouts " BOUNDARY_FOLDER
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
