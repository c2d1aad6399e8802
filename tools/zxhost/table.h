// Rows of named values, shown as an aligned table or as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>
#include <vector>

namespace zxhost {

using Json = nlohmann::ordered_json;

struct Column {
    std::string key;   // of the value in each row
    std::string head;  // above the column
    int decimals = 3;  // of numbers that are no whole numbers
};

// The rows whose value of this key is one of the names; without names, all.
Json chosen_rows(const Json& rows, const std::string& key, const std::vector<std::string>& names);

// `rows` is an array of objects. Numbers stand right, all else left; a missing value shows as "-".
void write_table(std::ostream& out, const std::vector<Column>& columns, const Json& rows);

// One document, ended by a line feed. Texts that are no UTF-8 are mended, not-a-number becomes null.
void write_json(std::ostream& out, const Json& document);

// The same on a single line, for streams of records.
void write_json_line(std::ostream& out, const Json& document);

}  // namespace zxhost
