// A scan file as it grows: each point a whole line, handed to the system as it arrives.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "os/file.h"
#include "scan_header.h"

namespace zxhost {

// Whatever becomes of the program, what was flushed is in the file. Every failure to write is a HostError
// (wrong usage) that names the file and the reason; after the first one nothing more is written.
class ScanWriter {
public:
    // A new file with its header; one that was there is replaced.
    ScanWriter(const std::string& file, const ScanHeader& header);
    // Without finish or cut before it the file has no footer, and so counts as cut.
    ~ScanWriter();
    ScanWriter(const ScanWriter&) = delete;
    ScanWriter& operator=(const ScanWriter&) = delete;

    // Keeps the exact value of each number. The point is in the file after the next flush.
    void add(const std::vector<double>& point);

    // Hands on what was added, whole lines in one write.
    void flush();

    // The footer of a whole scan, and all of it on the disk. If a point had too few or too many numbers, the
    // footer says cut, and HostError (machine error) tells of the first such point.
    void finish();

    // The footer of a scan that did not come to its end.
    void cut(const std::string& why);

    const std::string& file() const { return m_file; }
    std::uint64_t points() const { return m_points; }

private:
    void write(std::string_view bytes);
    void end(bool whole, const std::string& why);
    void close();
    [[noreturn]] void fail();

    const std::string m_file;
    const std::size_t m_columns;
    os::FileHandle m_handle = os::no_file;
    std::string m_lines;  // not yet handed on
    std::uint64_t m_points = 0;
    std::uint64_t m_odd_point =
        0;  // the first one with another count of numbers than there are columns; 0: none
    std::size_t m_odd_count = 0;
    std::uint32_t m_crc = 0;
};

}  // namespace zxhost
