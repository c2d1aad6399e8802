// The reader's lines and strings, which are looked for in the buffer and copied piece by piece.

#include <algorithm>
#include <bit>
#include <cstring>

#include "errtrace.h"
#include "fastfile.h"
#include "fastfile_handle.h"

using fastfile::source;

namespace {

constexpr std::uint64_t each_byte(unsigned char c) { return 0x0101010101010101U * c; }

// Has the high bit set in each byte that is 0, and perhaps in some behind the first of them.
constexpr std::uint64_t zero_bytes(std::uint64_t word) {
    return (word - each_byte(1)) & ~word & each_byte(0x80);
}

// The first CR or LF, else `end`. Eight bytes a step, and both at once: looking for the one alone would run
// through the whole buffer for every line of a file that has only the other.
const char* find_line_end(const char* at, const char* end) {
    if constexpr (std::endian::native == std::endian::little) {
        for (; end - at >= 8; at += 8) {
            std::uint64_t word;
            std::memcpy(&word, at, sizeof word);
            const std::uint64_t hit = zero_bytes(word ^ each_byte('\n')) | zero_bytes(word ^ each_byte('\r'));
            if (hit != 0) return at + std::countr_zero(hit) / 8;
        }
    }
    return std::find_if(at, end, [](char c) { return c == '\n' || c == '\r'; });
}

}  // namespace

// At a line end in the buffer. False if the byte behind a CR can't be read.
bool MFastFileReader::take_line_end() {
    if (*cursor++ != '\r') return true;
    if (buffered() == 0 && !fill_buffer()) return false;
    if (buffered() > 0 && *cursor == '\n') ++cursor;
    return true;
}

bool MFastFileReader::ReadLine(std::string& target) {
    target.clear();
    while (true) {
        if (buffered() == 0 && !fill_buffer()) {
            MERRTRACE_REPORT(source, "MFastFileReader::ReadLine(STL): fill_buffer() failed");
            return false;
        }
        if (buffered() == 0) return true;
        const auto length = static_cast<std::size_t>(find_line_end(cursor, limit) - cursor);
        target.append(cursor, length);
        cursor += length;
        if (cursor == limit) continue;
        if (take_line_end()) return true;
        MERRTRACE_REPORT(source, "MFastFileReader::ReadLine(STL):fill_buffer() failed");
        return false;
    }
}

std::int64_t MFastFileReader::ReadLine(char* target, std::size_t max) {
    std::size_t stored = 0;
    bool ok = true;
    bool ended = false;
    while (ok && !ended && stored < max) {
        ok = buffered() > 0 || fill_buffer();
        if (buffered() == 0) break;
        const char* const piece_end = cursor + std::min(buffered(), max - stored);
        const char* const end = find_line_end(cursor, piece_end);
        const auto length = static_cast<std::size_t>(end - cursor);
        std::memcpy(target + stored, cursor, length);
        stored += length;
        cursor += length;
        ended = end != piece_end;
    }
    if (ended) ok = take_line_end();
    target[stored] = '\0';
    if (ok) return static_cast<std::int64_t>(stored);
    MERRTRACE_REPORT(source, "MFastFileReader::ReadLine(): fill_buffer() failed");
    return -1;
}

std::int64_t MFastFileReader::ReadString(char* target, std::size_t max, char delimiter) {
    std::size_t stored = 0;
    bool delimited = false;
    while (!delimited && stored < max) {
        if (buffered() == 0 && !fill_buffer()) {
            target[stored] = '\0';
            MERRTRACE_REPORT(source, "MFastFileReader::ReadString(): fill_buffer() failed");
            return -1;
        }
        if (buffered() == 0) break;
        std::size_t length = std::min(buffered(), max - stored);
        const void* const found = std::memchr(cursor, delimiter, length);
        delimited = found != nullptr;
        if (delimited) length = static_cast<std::size_t>(static_cast<const char*>(found) - cursor) + 1;
        std::memcpy(target + stored, cursor, length);
        stored += length;
        cursor += length;
    }
    const std::size_t count = delimited ? stored - 1 : stored;
    // A delimiter that came first is kept, with the NUL behind it.
    target[delimited && count == 0 ? 1 : count] = '\0';
    return static_cast<std::int64_t>(count);
}
