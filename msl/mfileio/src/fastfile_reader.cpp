#include <algorithm>
#include <cstring>

#include "errtrace.h"
#include "fastfile.h"
#include "fastfile_handle.h"
#include "os/error.h"

using fastfile::source;

namespace {

// Hands on what read_from_buffer gave to this operation.
std::int64_t reported(std::int64_t count, const char* operation) {
    if (count < 0) {
        MERRTRACE_REPORT(source, "MFastFileReader::%s(): read_from_buffer() failed", operation);
    }
    return count;
}

}  // namespace

MFastFileReader::MFastFileReader(const char* path) {
    if (!Open(path))
        MERRTRACE_REPORT(source, "MFastFileReader::MFastFileReader(): Open(\"%s\") failed", path);
}

MFastFileReader::~MFastFileReader() {
    if (!Close()) MERRTRACE_REPORT(source, "MFastFileReader::~MFastFileReader(): Close() failed");
}

bool MFastFileReader::Open(const char* path) {
    if (!is_closed() && !Close()) {
        MERRTRACE_REPORT(source, "MFastFileReader::Open(): Close() failed");
        return false;
    }
    int error = 0;
    if (!fastfile::openfile(path, file, error)) {
        MERRTRACE_REPORT(source, "MFastFileReader::Open(): openfile(\"%s\") failed: %d", path, error);
        return false;
    }
    state = 0;
    cursor = limit = rewind_limit = buffer.data();
    next_cr = nullptr;
    filename = path;
    return true;
}

bool MFastFileReader::Close() {
    if (is_closed()) return true;
    filename.clear();
    const bool closed = os::files().close(file);
    if (!closed) {
        MERRTRACE_REPORT(source, "MFastFileReader::Close(): CloseHandle() failed: %d", os::last_error());
    }
    file = os::no_file;
    state = -1;
    return closed;
}

bool MFastFileReader::fill_buffer() {
    std::uint64_t done = 0;
    if (!fastfile::read64(file, buffer.data(), buffer.size(), done)) {
        MERRTRACE_REPORT(source, "MFastFileReader::fill_buffer(): read64() failed");
        return false;
    }
    if (done == 0) return true;
    cursor = rewind_limit = buffer.data();
    limit = cursor + done;
    return true;
}

// Fills the buffer, whose bytes are others then.
bool MFastFileReader::refill() {
    next_cr = nullptr;
    return fill_buffer();
}

std::int64_t MFastFileReader::read_from_buffer(void* target, std::size_t size) {
    if (is_closed()) {
        MERRTRACE_REPORT(source, "MFastFileReader::read_from_buffer(): no open file");
        return -1;
    }
    char* const out = static_cast<char*>(target);
    const std::size_t first = std::min(size, buffered());
    if (first > 0) std::memcpy(out, cursor, first);
    cursor += first;
    const std::size_t rest = size - first;
    if (rest == 0) return static_cast<std::int64_t>(size);
    if (rest < buffer_size) {
        if (!refill()) {
            MERRTRACE_REPORT(source, "MFastFileReader::read_from_buffer(): fill_buffer() failed");
            return -1;
        }
        const std::size_t second = std::min(rest, buffered());
        if (second > 0) std::memcpy(out + first, cursor, second);
        cursor += second;
        return static_cast<std::int64_t>(first + second);
    }
    std::uint64_t done = 0;
    if (!fastfile::read64(file, out + first, rest, done)) {
        MERRTRACE_REPORT(source, "MFastFileReader::read_from_buffer(): read64(..,%u,..) failed",
                         static_cast<unsigned>(rest));
        return -1;
    }
    // What was read last no longer stands in the buffer.
    if (done > 0) rewind_limit = cursor;
    return static_cast<std::int64_t>(first + done);
}

std::int64_t MFastFileReader::Read(void* target, std::size_t size) {
    return reported(read_from_buffer(target, size), "Read");
}

std::int64_t MFastFileReader::ReadInt(int& value) {
    return reported(read_from_buffer(&value, sizeof value), "ReadInt");
}

std::int64_t MFastFileReader::ReadShort(short& value) {
    return reported(read_from_buffer(&value, sizeof value), "ReadShort");
}

std::int64_t MFastFileReader::ReadLong(long& value) {
    // Four bytes in the file, however long a long is.
    auto stored = static_cast<std::int32_t>(value);
    const std::int64_t count = reported(read_from_buffer(&stored, sizeof stored), "ReadLong");
    if (count > 0) value = stored;
    return count;
}

std::int64_t MFastFileReader::ReadFloat(float& value) {
    return reported(read_from_buffer(&value, sizeof value), "ReadFloat");
}

std::int64_t MFastFileReader::ReadDouble(double& value) {
    return reported(read_from_buffer(&value, sizeof value), "ReadDouble");
}

int MFastFileReader::read_char_from_buffer(char& c) {
    if (is_closed()) {
        MERRTRACE_REPORT(source, "MFastFileReader::read_char_from_buffer(): no open file");
        return -1;
    }
    if (buffered() == 0 && !refill()) {
        MERRTRACE_REPORT(source, "MFastFileReader::read_char_from_buffer(): fill_buffer() failed");
        return -1;
    }
    if (buffered() == 0) return 0;
    c = *cursor++;
    return 1;
}

int MFastFileReader::ReadChar(char& c) {
    const int count = read_char_from_buffer(c);
    if (count < 0) MERRTRACE_REPORT(source, "MFastFileReader::ReadChar(): read_char_from_buffer() failed");
    return count;
}

int MFastFileReader::ReadCharNL(char& c) {
    const int count = read_char_from_buffer(c);
    if (count < 0) {
        MERRTRACE_REPORT(source, "MFastFileReader::ReadCharNL: read_char_from_buffer() #1 failed");
    }
    if (count <= 0 || c != '\r') return count;
    char next = '\0';
    const int followed = read_char_from_buffer(next);
    if (followed < 0) {
        MERRTRACE_REPORT(source, "MFastFileReader::ReadCharNL(): read_char_from_buffer() #2 failed");
        return -1;
    }
    if (followed > 0 && next != '\n' && !UnReadChar()) {
        MERRTRACE_REPORT(source, "MFastFileReader::ReadCharNL(): UnReadChar() failed");
    }
    c = '\n';
    return 1;
}

bool MFastFileReader::UnReadChar() {
    if (cursor > rewind_limit) {
        --cursor;
        next_cr = nullptr;
        return true;
    }
    MERRTRACE_REPORT(source, "MFastFileReader::UnReadChar(): can't rewind");
    return false;
}

// With an empty buffer, or closed.
bool MFastFileReader::is_at_end() {
    if (is_closed()) {
        MERRLOG_REPORT(source, "MFastFileReader::IsEOF(): no open file");
        return true;
    }
    MErrTrace_BeginContext();
    if (!refill()) {
        MERRLOG_REPORT(source, "MFastFileReader::IsEOF(): fill_buffer() failed");
        MErrTrace_ClearContext();
    }
    MErrTrace_EndContext();
    return buffered() == 0;
}
