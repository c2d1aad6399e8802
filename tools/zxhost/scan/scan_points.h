// The points of a scan file in two or three of its columns, for pictures and fits.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "point.h"
#include "scan_reader.h"

namespace zxhost {

struct ScanPoints {
    ScanHeader header;
    ScanVerdict verdict;                 // whole or cut
    std::vector<std::string> axes;       // two or three, all different
    std::vector<std::string> units;      // of each
    std::vector<Point<3>> points;        // a third number that isn't asked for is 0
    std::vector<std::uint64_t> numbers;  // of each point in the file, counted from 1
    std::uint64_t left_out = 0;          // points with a number that isn't finite, or beyond 1e100
};

// The columns of these names. Throws HostError: wrong usage if it can't be read, is no scan file or has no
// such column, machine error if it is damaged.
std::vector<std::size_t> columns_of(const ScanReader& scan, const std::string& file,
                                    const std::vector<std::string>& axes);

// Reads them all. Throws HostError like columns_of.
ScanPoints read_points(const std::string& file, const std::vector<std::string>& axes);

// Throws HostError if the scan is damaged or none.
void refuse_damaged(const ScanVerdict& verdict, const std::string& file);

// "scan.csv: cut at line 17, byte 2034: it ends without a footer"
std::string verdict_text(const std::string& file, const ScanVerdict& verdict);

// Is this a number that geometry can be done with?
bool is_usable(double number);

}  // namespace zxhost
