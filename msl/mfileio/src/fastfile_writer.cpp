#include <cstring>

#include "errtrace.h"
#include "fastfile.h"
#include "fastfile_handle.h"
#include "os/error.h"

using fastfile::source;

namespace {

// Hands on what write_to_buffer gave to this operation.
std::int64_t reported(std::int64_t count, const char* operation) {
    if (count < 0) {
        MERRTRACE_REPORT(source, "MFastFileWriter::%s(): write_to_buffer() failed", operation);
    }
    return count;
}

}  // namespace

MFastFileWriter::MFastFileWriter(const char* path, int mode) : MFastFileWriter() {
    if (!Open(path, mode)) {
        MERRTRACE_REPORT(source, "MFastFileWriter::MFastFileWriter(): Open(\"%s\",%d) failed", path, mode);
    }
}

MFastFileWriter::~MFastFileWriter() {
    if (!Close()) MERRTRACE_REPORT(source, "MFastFileWriter::~MFastFileWriter(): Close() failed");
}

bool MFastFileWriter::Open(const char* path, int mode) {
    if (!is_closed() && !Close()) {
        MERRTRACE_REPORT(source, "MFastFileWriter::Open(): Close() failed");
        return false;
    }
    if (!fastfile::openwritefile(path, mode, file)) {
        MERRTRACE_REPORT(source, "%s(): openwritefile(%s, %d) failed", "MFastFileWriter::Open", path, mode);
        return false;
    }
    state = 0;
    cursor = buffer.data();
    filename = path;
    return true;
}

bool MFastFileWriter::Close() {
    if (is_closed()) return true;
    filename.clear();
    write_buffered();
    const bool closed = os::files().close(file);
    if (!closed) {
        MERRTRACE_REPORT(source, "%s(): CloseHandle() failed: %u", "MFastFileWriter::Close",
                         static_cast<unsigned>(os::last_error()));
    }
    file = os::no_file;
    state = -1;
    return closed;
}

bool MFastFileWriter::write_to_disk(const void* data, std::size_t size) {
    constexpr const char* name = "MFastFileWriter::write_to_disk";
    if (is_closed()) {
        MERRTRACE_REPORT(source, "MFastFileWriter::write_to_disk(): no open file");
        return false;
    }
    std::uint64_t done = 0;
    if (!fastfile::write64(file, data, size, done)) {
        MERRTRACE_REPORT(source, "%s(): write64() failed", name);
        return false;
    }
    if (done == size) return true;
    MERRTRACE_REPORT(source, "%s(): wrote only %u bytes instead of %zu bytes", name,
                     static_cast<unsigned>(done), size);
    return false;
}

bool MFastFileWriter::write_buffered() {
    const std::size_t size = used();
    cursor = buffer.data();
    return size == 0 || write_to_disk(buffer.data(), size);
}

std::int64_t MFastFileWriter::write_to_buffer(const void* data, std::size_t size) {
    // The buffer never takes more than this behind a full one that went out.
    constexpr std::size_t most_after_full = 16352;
    if (is_closed()) {
        MERRTRACE_REPORT(source, "MFastFileWriter::write_to_buffer(): no open file");
        return -1;
    }
    const char* const bytes = static_cast<const char*>(data);
    const auto room = static_cast<std::size_t>(limit - cursor);
    if (size < room) {
        if (size > 0) std::memcpy(cursor, bytes, size);
        cursor += size;
        return static_cast<std::int64_t>(size);
    }
    const std::size_t used_before = used();
    const std::size_t rest = size - room;
    if (room > 0) std::memcpy(cursor, bytes, room);
    cursor = limit;
    bool ok = write_buffered();
    if (used_before + size > most_after_full) {
        ok = write_to_disk(bytes + room, rest) && ok;
    } else if (rest > 0) {
        std::memcpy(cursor, bytes + room, rest);
        cursor += rest;
    }
    return ok ? static_cast<std::int64_t>(size) : -1;
}

std::int64_t MFastFileWriter::Write(const void* data, std::size_t size) {
    // Under the name of its sibling, as readers of the trace know it.
    return reported(write_to_buffer(data, size), "WriteString");
}

std::int64_t MFastFileWriter::WriteString(const char* text) { return Write(text, std::strlen(text)); }

int MFastFileWriter::WriteChar(char c) {
    if (is_closed()) {
        MERRTRACE_REPORT(source, "MFastFileWriter::WriteChar(): no open file");
        return -1;
    }
    if (cursor == limit && !write_buffered()) {
        MERRTRACE_REPORT(source, "MFastFileWriter::WriteChar(): write_to_disk() failed");
        return -1;
    }
    *cursor++ = c;
    return 1;
}

int MFastFileWriter::WriteCharNL(char c) {
    if ((c != '\n' || WriteChar('\r') == 1) && WriteChar(c) == 1) return 1;
    MERRTRACE_REPORT(source, "MFastFileWriter::WriteCharNL(): WriteChar() failed");
    return -1;
}

std::int64_t MFastFileWriter::WriteStringNL(const char* text) {
    std::int64_t count = 0;
    for (; text[count]; ++count) {
        if (WriteCharNL(text[count]) == 1) continue;
        MERRTRACE_REPORT(source, "MFastFileWriter::WriteStringNL(): WriteCharNL() failed");
        return -1;
    }
    return count;
}

std::int64_t MFastFileWriter::WriteLine(const char* text) {
    if (const char* const end = std::strchr(text, '\n')) {
        MERRTRACE_REPORT(source, "MFastFileWriter::WriteLine(): EOL detected in string at pos %zu",
                         static_cast<std::size_t>(end - text));
        return -1;
    }
    const std::int64_t count = reported(write_to_buffer(text, std::strlen(text)), "WriteLine");
    if (count < 0) return -1;
    if (WriteCharNL('\n') != 1) {
        MERRTRACE_REPORT(source, "MFastFileWriter::WriteLine(): WriteCharNL() failed");
        return -1;
    }
    return count + 1;
}

std::int64_t MFastFileWriter::WriteLineNL(const char* text) {
    const std::int64_t count = WriteStringNL(text);
    if (count < 0) {
        MERRTRACE_REPORT(source, "MFastFileWriter::WriteLineNL(): WriteStringNL() failed");
        return -1;
    }
    if (WriteCharNL('\n') != 1) {
        MERRTRACE_REPORT(source, "MFastFileWriter::WriteLineNL(): WriteCharNL() failed");
        return -1;
    }
    return count + 1;
}

std::int64_t MFastFileWriter::WriteInt(int value) {
    return reported(write_to_buffer(&value, sizeof value), "WriteInt");
}

std::int64_t MFastFileWriter::WriteShort(short value) {
    return reported(write_to_buffer(&value, sizeof value), "WriteShort");
}

std::int64_t MFastFileWriter::WriteLong(long value) {
    // Four bytes in the file, however long a long is.
    const auto stored = static_cast<std::int32_t>(value);
    return reported(write_to_buffer(&stored, sizeof stored), "WriteLong");
}

std::int64_t MFastFileWriter::WriteFloat(float value) {
    return reported(write_to_buffer(&value, sizeof value), "WriteFloat");
}

std::int64_t MFastFileWriter::WriteDouble(double value) {
    return reported(write_to_buffer(&value, sizeof value), "WriteDouble");
}

bool MFastFileWriter::Flush() {
    if (is_closed()) {
        MERRTRACE_REPORT(source, "MFastFileWriter::Flush(): no open file");
        return false;
    }
    write_buffered();
    // The test stands as it always stood: callers know the report that comes with an open file.
    if (file != os::no_file) {
        MERRTRACE_REPORT(source, "MFastFileWriter::Flush(): hFile not valid");
        return false;
    }
    if (os::files().flush(file)) return true;
    MERRTRACE_REPORT(source, "MFastFileWriter::Flush(): FlushFileBuffers() failed: %d", os::last_error());
    return false;
}
