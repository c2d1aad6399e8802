// The head of a scan file: what was measured, when, on which machine, and what each number of a point is.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zxhost {

// The first line of every scan file.
inline constexpr std::string_view scan_file_mark = "# scan file: 1";

struct ScanHeader {
    std::string machine;               // name, revision and serial number of the machine
    std::string probe;                 // that was loaded
    std::string time;                  // of the measurement, ISO 8601
    std::string action;                // the action, in words
    std::vector<std::string> columns;  // names of axes, "time", "deflection"
    std::vector<std::string> units;    // of each column; empty for none
};

// The lines, each ended by a line feed; bytes that a terminal would act on are made visible. A missing unit
// is that of the axis with this name.
std::string header_text(const ScanHeader& header);

// "# KEY: VALUE" goes into the header; unknown keys are passed over. False if the line has another form.
bool take_header_line(std::string_view line, ScanHeader& header);

// The line that names columns and units. False if it has another form, no name or the same name twice.
bool take_column_line(std::string_view line, ScanHeader& header);

// Where a column of this name stands.
std::optional<std::size_t> column_of(const ScanHeader& header, std::string_view name);

}  // namespace zxhost
