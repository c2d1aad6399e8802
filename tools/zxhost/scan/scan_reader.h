// A scan file read back, and how far it can be trusted.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bounded_lines.h"
#include "scan_header.h"

namespace zxhost {

enum class ScanState {
    Whole,    // its footer says so, and count and checksum agree
    Cut,      // it ends early, or its footer says cut; what there is can be used
    Damaged,  // something in it is not as it was written
    NoScan,   // another kind of file
};

struct ScanVerdict {
    ScanState state = ScanState::Cut;
    std::uint64_t points = 0;  // good ones, before the place
    std::uint64_t line =
        1;  // of the footer if it is whole, else of the first line that isn't good or missing
    std::uint64_t byte = 0;  // of that line's first byte, counted from 0
    std::string why;         // empty if it is whole
};

// Memory is bounded by the longest line that is taken (1 MiB).
class ScanReader {
public:
    // Reads the header. Throws HostError (wrong usage) if the file can't be read; what it holds never throws.
    explicit ScanReader(const std::string& file);

    const ScanHeader& header() const { return m_header; }

    // The next good point, one number a column; false where the good points end: then there is a verdict.
    bool next(std::vector<double>& point);

    const ScanVerdict& verdict() const { return m_verdict; }

private:
    bool take_line(std::string_view& line);
    void read_header();
    bool parse(std::string_view line, std::vector<double>& point);
    void read_footer(std::string_view line);
    void end(ScanState state, const std::string& why);

    BoundedLines m_lines;
    ScanHeader m_header;
    ScanVerdict m_verdict;
    std::uint32_t m_crc = 0;
    bool m_ended = false;
};

// Reads all of it. Throws HostError (wrong usage) if the file can't be read.
ScanVerdict verify_scan(const std::string& file);

// "whole", "cut", "damaged", "no scan file"
const char* word_of(ScanState state);

}  // namespace zxhost
