// Whole files in one call.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "errtrace.h"
#include "fastfile.h"
#include "fastfile_handle.h"
#include "fileops.h"
#include "find_byte.h"
#include "os/error.h"

using fastfile::source;

namespace {

struct Free {
    void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<char, Free>;

// Turns CR LF and CR to LF in place, and returns the new size.
std::size_t normalise_line_ends(char* text, std::size_t size) {
    char* out = text;
    for (const char* in = text; in != text + size; ++in) {
        if (*in == '\r' && in + 1 != text + size && in[1] == '\n') continue;
        *out++ = *in == '\r' ? '\n' : *in;
    }
    return static_cast<std::size_t>(out - text);
}

// Turns LF, CR and CR LF to CR LF; the target has room for twice the size. Returns the new size.
std::size_t expand_line_ends(const char* text, std::size_t size, char* target) {
    const char* const end = text + size;
    const char* next_cr = find_byte(text, end, '\r');
    char* out = target;
    while (text != end) {
        const char* const line_end = find_byte(text, next_cr, '\n');
        out = std::copy(text, line_end, out);
        text = line_end;
        if (text == end) break;
        *out++ = '\r';
        *out++ = '\n';
        if (*text++ == '\n') continue;
        if (text != end && *text == '\n') ++text;
        next_cr = find_byte(text, end, '\r');
    }
    return static_cast<std::size_t>(out - target);
}

// A new, empty file beside `filename`.
bool make_temporary_beside(const char* filename, std::string& path) {
    const Block directory(static_cast<char*>(std::malloc(std::strlen(filename) + 12)));
    if (!directory) {
        MERRTRACE_REPORT(source, "MFastFile_WriteAtOnce(): malloc() failed");
        return false;
    }
    if (!file_dirname(filename, directory.get())) *directory = '\0';
    if (os::files().make_temporary(directory.get(), "ffw", path)) return true;
    MERRTRACE_REPORT(source, "MFastFile_WriteAtOnce(): GetTempFileName() failed:%u",
                     static_cast<unsigned>(os::last_error()));
    return false;
}

// Writes, flushes if told, and closes. Count written, or -1 if any of it failed.
std::int64_t write_and_close(os::FileHandle file, const void* data, std::size_t size, bool flush) {
    constexpr const char* name = "MFastFile_WriteAtOnce";
    std::uint64_t done = 0;
    bool ok = fastfile::write64(file, data, size, done);
    if (!ok) {
        MERRTRACE_REPORT(source, "%s(): write64() failed", name);
    } else if (flush && !os::files().flush(file)) {
        MERRTRACE_REPORT(source, "%s(): FlushFileBuffers() failed: %u", name,
                         static_cast<unsigned>(os::last_error()));
        ok = false;
    }
    if (!os::files().close(file)) {
        MERRTRACE_REPORT(source, "%s(): CloseHandle() failed: %u", name,
                         static_cast<unsigned>(os::last_error()));
        ok = false;
    }
    return ok ? static_cast<std::int64_t>(done) : -1;
}

// Opens `path` to write what `filename` shall hold.
bool open_to_write(const char* path, const char* filename, int mode, os::FileHandle& file) {
    if (fastfile::openwritefile(path, mode, file)) return true;
    MERRTRACE_REPORT(source, "%s(): openwritefile(%s, %d) failed", "MFastFile_WriteAtOnce", filename, mode);
    return false;
}

// Half a file shall not take the place of a whole one.
bool replace_by(const std::string& temporary, const char* filename, std::int64_t count, std::size_t size) {
    if (count < 0) return false;
    if (static_cast<std::size_t>(count) != size) {
        MERRTRACE_REPORT(source, "%s(): wrote only %u bytes instead of %zu bytes", "MFastFile_WriteAtOnce",
                         static_cast<unsigned>(count), size);
        return false;
    }
    if (file_rename(temporary.c_str(), filename)) return true;
    MERRTRACE_REPORT(source, "MFastFile_WriteAtOnce(): file_rename(%s,%s) failed: %s", temporary.c_str(),
                     filename, os::error_text(os::last_error()).c_str());
    return false;
}

std::int64_t write_temporary(const std::string& temporary, const char* filename, const void* data,
                             std::size_t size) {
    os::FileHandle file = os::no_file;
    if (!open_to_write(temporary.c_str(), filename, MFASTFILE_OVERWRITE, file)) return -1;
    // Before the data, which others may not be allowed to read. Without the rights it is a new file like any.
    os::files().take_rights(file, filename);
    return write_and_close(file, data, size, true);
}

std::int64_t write_by_rename(const char* filename, const void* data, std::size_t size) {
    std::string temporary;
    if (!make_temporary_beside(filename, temporary)) return -1;
    const std::int64_t count = write_temporary(temporary, filename, data, size);
    if (replace_by(temporary, filename, count, size)) return count;
    file_remove(temporary.c_str());
    return -1;
}

}  // namespace

std::int64_t MFastFile_ReadAtOnce(const char* filename, void* target, std::size_t size) {
    os::FileHandle file = os::no_file;
    int error = 0;
    if (!fastfile::openfile(filename, file, error)) {
        MERRTRACE_REPORT(source, "MFastFile_ReadAtOnce(): openfile(\"%s\") failed.", filename);
        return -1;
    }
    std::uint64_t done = 0;
    if (!fastfile::read64(file, target, size, done)) {
        MERRTRACE_REPORT(source, "MFastFile_ReadAtOnce(): ReadFile(..,%zu,..) failed for \"%s\"", size,
                         filename);
        os::files().close(file);
        return -1;
    }
    if (!os::files().close(file)) {
        MERRTRACE_REPORT(source, "MFastFile_ReadAtOnce(): CloseHandle() failed for \"%s\": %d", filename,
                         os::last_error());
        return -1;
    }
    return static_cast<std::int64_t>(done);
}

std::int64_t MFastFile_ReadAtOnce(const char* filename, std::string& target) {
    const std::int64_t size = file_size(filename);
    if (size < 0) {
        MERRTRACE_REPORT(source, "MFastFile_ReadAtOnce(): file_size(\"%s\") returned %lld", filename,
                         static_cast<long long>(size));
        return -1;
    }
    target.resize(static_cast<std::size_t>(size));
    const std::int64_t count = MFastFile_ReadAtOnce(filename, target.data(), target.size());
    if (count < 0) {
        MERRTRACE_REPORT(source, "MFastFile_ReadAtOnce(): MFastFile_ReadAtOnce(\"%s\",..,%lld) failed",
                         filename, static_cast<long long>(size));
    }
    target.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return count;
}

std::int64_t MFastFile_ReadLinesAtOnce(const char* filename, void* target, std::size_t size) {
    const std::int64_t count = MFastFile_ReadAtOnce(filename, target, size);
    if (count < 0) {
        MERRTRACE_REPORT(source, "MFastFile_ReadLinesAtOnce(): MFastFile_ReadAtOnce(\"%s\",..,%zu) failed",
                         filename, size);
        return -1;
    }
    return static_cast<std::int64_t>(
        normalise_line_ends(static_cast<char*>(target), static_cast<std::size_t>(count)));
}

std::int64_t MFastFile_ReadLinesAtOnce(const char* filename, std::string& target) {
    const std::int64_t size = file_size(filename);
    if (size < 0) {
        MERRTRACE_REPORT(source, "MFastFile_ReadLinesAtOnce(): file_size(\"%s\") returned %lld", filename,
                         static_cast<long long>(size));
        return -1;
    }
    target.resize(static_cast<std::size_t>(size));
    const std::int64_t count = MFastFile_ReadAtOnce(filename, target.data(), target.size());
    if (count < 0) {
        MERRTRACE_REPORT(source, "MFastFile_ReadLinesAtOnce(): MFastFile_ReadAtOnce(\"%s\",..,%lld) failed",
                         filename, static_cast<long long>(size));
        target.clear();
        return -1;
    }
    target.resize(normalise_line_ends(target.data(), static_cast<std::size_t>(count)));
    return static_cast<std::int64_t>(target.size());
}

std::int64_t MFastFile_WriteAtOnce(const char* filename, const void* data, std::size_t size, int mode) {
    const bool flush = (mode & MFASTFILE_FLUSH) != 0;
    const int kind = mode & ~MFASTFILE_FLUSH;
    if (kind == MFASTFILE_BY_RENAME) return write_by_rename(filename, data, size);
    os::FileHandle file = os::no_file;
    return open_to_write(filename, filename, kind, file) ? write_and_close(file, data, size, flush) : -1;
}

std::int64_t MFastFile_WriteLinesAtOnce(const char* filename, const char* text, std::size_t size, int mode) {
    const Block converted(static_cast<char*>(std::malloc(2 * size)));
    if (!converted && size > 0) {
        MERRTRACE_REPORT(source, "MFastFile_WriteLinesAtOnce(): malloc(%zu) failed: %.50s", 2 * size,
                         os::errno_text().c_str());
        return -1;
    }
    const std::size_t new_size = expand_line_ends(text, size, converted.get());
    const std::int64_t count = MFastFile_WriteAtOnce(filename, converted.get(), new_size, mode);
    if (count < 0) {
        MERRTRACE_REPORT(source,
                         "MFastFile_WriteLinesAtOnce(): MFastFile_WriteAtOnce(\"%s\",..,%zu,%d) failed",
                         filename, new_size, mode);
    }
    return count;
}

bool MFastFile_CopyFile(const char* source_name, const char* target, int mode) {
    const std::int64_t size = file_size(source_name);
    if (size == -1) {
        MERRTRACE_REPORT(source, "MFastFile_CopyFile(): file_size(\"%s\") failed", source_name);
        return false;
    }
    // A file that shrinks meanwhile can't be read whole.
    std::string content(static_cast<std::size_t>(size), '\0');
    if (size > 0 && MFastFile_ReadAtOnce(source_name, content.data(), content.size()) != size) {
        MERRTRACE_REPORT(source, "MFastFile_CopyFile(): MFastFile_ReadAtOnce(\"%s\",..,%lld) failed",
                         source_name, static_cast<long long>(size));
        return false;
    }
    if (MFastFile_WriteAtOnce(target, content.data(), content.size(), mode) != size) {
        MERRTRACE_REPORT(source, "MFastFile_CopyFile(): MFastFile_WriteAtOnce(\"%s\",..,%lld,%d) failed",
                         target, static_cast<long long>(size), mode);
        return false;
    }
    return true;
}
