// A scan file's points in the forms that other programs read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "scan_reader.h"

namespace zxhost {

struct ExportResult {
    std::uint64_t points = 0;    // written
    std::uint64_t left_out = 0;  // points with a number that isn't finite, which these forms can't hold
    ScanVerdict verdict;         // whole or cut
};

// Three axes become x, y and z. The target appears whole or not at all: it is written beside itself and
// renamed at the end. Throws HostError: wrong usage if a file can't be read or written, is no scan file or
// has no such axis; machine error if it is damaged.
ExportResult export_ply(const std::string& scan_file, const std::string& target,
                        const std::vector<std::string>& axes);  // PLY 1.0, as text
ExportResult export_xyz(const std::string& scan_file, const std::string& target,
                        const std::vector<std::string>& axes);  // a line each, blanks between the numbers

}  // namespace zxhost
