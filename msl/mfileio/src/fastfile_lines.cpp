// The reader's lines and strings, which are looked for in the buffer and copied piece by piece.

#include <algorithm>
#include <cstring>

#include "errtrace.h"
#include "fastfile.h"
#include "fastfile_handle.h"
#include "find_byte.h"

using fastfile::source;

// The first CR or LF of the buffer from `cursor` to `end`, else `end`. Where the next CR stands is
// remembered: looking for both ends anew for each line would run through the whole buffer for every line of a
// file that has only one of them.
const char* MFastFileReader::find_line_end(const char* end) {
    if (!next_cr || next_cr < cursor) next_cr = find_byte(cursor, limit, '\r');
    return find_byte(cursor, std::min(end, next_cr), '\n');
}

// At a line end in the buffer. False if the byte behind a CR can't be read.
bool MFastFileReader::take_line_end() {
    if (*cursor++ != '\r') return true;
    if (buffered() == 0 && !refill()) return false;
    if (buffered() > 0 && *cursor == '\n') ++cursor;
    return true;
}

bool MFastFileReader::ReadLine(std::string& target) {
    target.clear();
    while (true) {
        if (buffered() == 0 && !refill()) {
            MERRTRACE_REPORT(source, "MFastFileReader::ReadLine(STL): fill_buffer() failed");
            return false;
        }
        if (buffered() == 0) return true;
        const auto length = static_cast<std::size_t>(find_line_end(limit) - cursor);
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
        ok = buffered() > 0 || refill();
        if (buffered() == 0) break;
        const char* const piece_end = cursor + std::min(buffered(), max - stored);
        const char* const end = find_line_end(piece_end);
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
        if (buffered() == 0 && !refill()) {
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
