// The last line of a scan file, which says whether the scan came to its end, and proves what stands before
// it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zxhost {

struct ScanFooter {
    bool whole = false;        // the scan came to its end
    std::uint64_t points = 0;  // lines of points before it
    std::uint32_t crc = 0;     // CRC-32 of every byte before it
    std::string reason;        // why it was cut; may be empty
};

// What every footer begins with, and no other line.
inline constexpr std::string_view footer_mark = "# end: ";

// One line, ended by a line feed.
std::string footer_text(const ScanFooter& footer);

// The line without its end; nothing if it has another form.
std::optional<ScanFooter> footer_from(std::string_view line);

// Goes on with a CRC-32 as zlib, gzip and PNG have it; begin with 0.
std::uint32_t crc_of(std::string_view bytes, std::uint32_t before);

}  // namespace zxhost
