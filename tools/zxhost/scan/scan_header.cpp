#include "scan_header.h"

#include <algorithm>
#include <array>
#include <utility>

#include "number_text.h"

namespace zxhost {
namespace {

struct Key {
    std::string_view name;
    std::string ScanHeader::*value;
};
constexpr std::array<Key, 4> keys{{{"machine", &ScanHeader::machine},
                                   {"probe", &ScanHeader::probe},
                                   {"time", &ScanHeader::time},
                                   {"action", &ScanHeader::action}}};

// A field in quotes if it needs them.
std::string field(const std::string& text) {
    if (text.find_first_of(",\"#") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string column_text(const ScanHeader& header, std::size_t i) {
    const std::string& name = header.columns[i];
    const std::string_view unit = i < header.units.size() ? header.units[i] : unit_of(name);
    return field(printable(unit.empty() ? name : name + " [" + std::string(unit) + "]"));
}

// Takes one field off the front of the line, its comma too; nothing if its quotes don't close.
std::optional<std::string> take_field(std::string_view& line) {
    std::string text;
    const bool quoted = line.starts_with('"');
    bool open = quoted;
    std::size_t at = quoted ? 1 : 0;
    for (; at < line.size() && (open || line[at] != ','); ++at) {
        if (quoted && !open) return std::nullopt;  // something between the last quote and the comma
        if (!quoted || line[at] != '"')
            text += line[at];
        else if (line.substr(at).starts_with("\"\""))
            text += line[at++];
        else
            open = false;
    }
    if (open) return std::nullopt;
    line.remove_prefix(at);
    return text;
}

void add_column(ScanHeader& header, std::string text) {
    const std::size_t unit = text.rfind(" [");
    if (unit == std::string::npos || !text.ends_with(']')) {
        header.columns.push_back(std::move(text));
        header.units.emplace_back();
        return;
    }
    header.columns.push_back(text.substr(0, unit));
    header.units.push_back(text.substr(unit + 2, text.size() - unit - 3));
}

bool has_twins(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    return std::adjacent_find(names.begin(), names.end()) != names.end();
}

}  // namespace

std::string header_text(const ScanHeader& header) {
    std::string text = std::string(scan_file_mark) + "\n";
    for (const Key& key : keys)
        text += "# " + std::string(key.name) + ": " + printable(header.*key.value) + "\n";
    for (std::size_t i = 0; i < header.columns.size(); ++i) text += (i ? "," : "") + column_text(header, i);
    return text + "\n";
}

bool take_header_line(std::string_view line, ScanHeader& header) {
    if (!line.starts_with("# ")) return false;
    line.remove_prefix(2);
    const std::size_t colon = line.find(": ");
    if (colon == std::string_view::npos || colon == 0) return false;
    for (const Key& key : keys)
        if (line.substr(0, colon) == key.name) header.*key.value = line.substr(colon + 2);
    return true;
}

bool take_column_line(std::string_view line, ScanHeader& header) {
    for (bool more = true; more;) {
        auto text = take_field(line);
        if (!text || text->empty()) return false;
        add_column(header, std::move(*text));
        more = line.starts_with(',');
        if (more) line.remove_prefix(1);
    }
    return line.empty() && !has_twins(header.columns);
}

std::optional<std::size_t> column_of(const ScanHeader& header, std::string_view name) {
    const auto found = std::find(header.columns.begin(), header.columns.end(), name);
    if (found == header.columns.end()) return std::nullopt;
    return static_cast<std::size_t>(found - header.columns.begin());
}

}  // namespace zxhost
