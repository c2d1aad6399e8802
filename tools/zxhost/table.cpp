#include "table.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>

#include "number_text.h"

namespace zxhost {
namespace {

std::string cell_text(const Json& value, int decimals) {
    if (value.is_null()) return "-";
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (value.is_number_float()) return fixed_text(value.get<double>(), decimals);
    if (value.is_string()) return printable(value.get_ref<const std::string&>());
    if (!value.is_array()) return value.dump();
    std::string text;
    for (const Json& item : value) {
        if (!text.empty()) text += ' ';
        text += cell_text(item, decimals);
    }
    return text.empty() ? "-" : text;
}

// Code points, which is what a terminal gives a column each for the texts of this trade.
std::size_t width_of(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

struct Cells {
    std::vector<std::string> texts;  // the head first
    std::size_t width = 0;
    bool right = true;
};

Cells cells_of(const Column& column, const Json& rows) {
    Cells cells;
    cells.texts.push_back(column.head);
    for (const Json& row : rows) {
        const auto found = row.find(column.key);
        const Json value = found == row.end() ? Json() : *found;
        cells.right = cells.right && (value.is_number() || value.is_null());
        cells.texts.push_back(cell_text(value, column.decimals));
    }
    for (const std::string& text : cells.texts) cells.width = std::max(cells.width, width_of(text));
    return cells;
}

std::string padded(const std::string& text, const Cells& cells) {
    const std::string blanks(cells.width - width_of(text), ' ');
    return cells.right ? blanks + text : text + blanks;
}

void write_line(std::ostream& out, std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << "\n";
}

}  // namespace

Json chosen_rows(const Json& rows, const std::string& key, const std::vector<std::string>& names) {
    Json result = Json::array();
    for (const Json& row : rows)
        if (names.empty() || std::find(names.begin(), names.end(), row[key]) != names.end())
            result.push_back(row);
    return result;
}

void write_table(std::ostream& out, const std::vector<Column>& columns, const Json& rows) {
    std::vector<Cells> table;
    for (const Column& column : columns) table.push_back(cells_of(column, rows));
    for (std::size_t row = 0; row <= rows.size(); ++row) {
        std::string line, rule;
        for (const Cells& cells : table) {
            line += (line.empty() ? "" : "  ") + padded(cells.texts[row], cells);
            rule += (rule.empty() ? "" : "  ") + std::string(cells.width, '-');
        }
        write_line(out, line);
        if (row == 0) write_line(out, rule);
    }
}

void write_json(std::ostream& out, const Json& document) {
    out << document.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

void write_json_line(std::ostream& out, const Json& document) {
    out << document.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace zxhost
