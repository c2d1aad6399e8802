// The lines of a file that nobody vouches for: each with its place, none longer than a bound.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "os/file.h"

namespace zxhost {

class BoundedLines {
public:
    static constexpr std::size_t longest_line = 1 << 20;

    enum class Kind {
        Line,     // ended by a line feed
        Torn,     // the last one, and it has no line feed
        TooLong,  // the bound is passed; what there is of it
        End,      // nothing more
    };

    // Throws HostError (wrong usage) if the file can't be opened.
    explicit BoundedLines(const std::string& file);
    ~BoundedLines();
    BoundedLines(const BoundedLines&) = delete;
    BoundedLines& operator=(const BoundedLines&) = delete;

    // `line` has no line feed and is good until the next call. Throws HostError (wrong usage) if the file
    // can't be read.
    Kind next(std::string_view& line);

    // Of the line last given, or of the end: counted from 1, and of its first byte counted from 0.
    std::uint64_t line() const { return m_line; }
    std::uint64_t byte() const { return m_byte; }

private:
    bool fill();

    const std::string m_file;
    os::FileHandle m_handle;
    std::string m_buffer;
    std::size_t m_start = 0;  // of the next line in the buffer
    std::uint64_t m_line = 0;
    std::uint64_t m_byte = 0;
    std::uint64_t m_next_byte = 0;
};

}  // namespace zxhost
