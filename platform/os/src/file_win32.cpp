#include <io.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "os/file.h"
#include "os/path.h"
#include "rights_win32.h"
#include "system_files.h"
#include "windows_api.h"

namespace os {

namespace {

HANDLE handle(FileHandle file) { return reinterpret_cast<HANDLE>(file); }

bool refuse(DWORD error) {
    SetLastError(error);
    return false;
}

std::wstring wide(const std::string& text) {
    const int size = static_cast<int>(text.size());
    std::wstring out(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, out.data(), size);
    return out.substr(0, static_cast<std::size_t>(length));
}

std::string narrow(const char* name) { return name; }

std::string narrow(const wchar_t* name) {
    std::array<char, 4 * MAX_PATH> text{};
    WideCharToMultiByte(CP_ACP, 0, name, -1, text.data(), static_cast<int>(text.size() - 1), nullptr,
                        nullptr);
    return text.data();
}

// The services that take bytes take no long paths; a verbatim path may be one.
template <class Ansi, class Wide, class... Arguments>
auto call(Ansi ansi_service, Wide wide_service, const char* path, Arguments... arguments) {
    return is_verbatim(path) ? wide_service(wide(path).c_str(), arguments...)
                             : ansi_service(path, arguments...);
}

struct Opening {
    DWORD access;
    DWORD sharing;
    DWORD disposition;
    BOOL inherited;
};

Opening opening(OpenMode mode) {
    switch (mode) {
        case OpenMode::Read:
            break;
        case OpenMode::CreateNew:
            return {FILE_WRITE_DATA, FILE_SHARE_READ, CREATE_NEW, FALSE};
        case OpenMode::Append:
            return {FILE_APPEND_DATA, FILE_SHARE_READ, OPEN_ALWAYS, FALSE};
        case OpenMode::Truncate:
            return {FILE_WRITE_DATA, FILE_SHARE_READ, CREATE_ALWAYS, FALSE};
    }
    return {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, TRUE};
}

// The runtime finds nothing behind a name that ends in a separator, but for a drive's root.
std::string without_last_separator(std::string path) {
    while (path.size() > 1 && (path.back() == '\\' || path.back() == '/') && path[path.size() - 2] != ':') {
        path.pop_back();
    }
    return path;
}

// The runtime takes the question mark of a verbatim path for one that matches.
bool verbatim_info(const char* path, FileInfo& out) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(wide(path).c_str(), GetFileExInfoStandard, &data)) return false;
    const std::uint64_t size = std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
    out = {static_cast<std::int64_t>(size), (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0};
    return true;
}

// A link, or a place where another tree is mounted; not a directory whose files come from elsewhere when they
// are opened. Some systems keep what it is to themselves.
bool leads_elsewhere(const std::string& path) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(wide(path).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return true;
    FindClose(search);
    return found.dwReserved0 == 0 || IsReparseTagNameSurrogate(found.dwReserved0);
}

DirectoryEntry entry_of(const std::string& name, unsigned attributes) {
    return {name, (attributes & _A_SUBDIR) != 0, (attributes & (_A_HIDDEN | _A_SYSTEM)) != 0};
}

// In a listing links are told as what they are, so that nobody walks through one into another tree.
template <class Found, class First, class Next, class Pattern>
bool search(First first, Next next, const Pattern& pattern, const std::string& listed,
            std::vector<DirectoryEntry>& out) {
    Found found{};
    const std::intptr_t running = first(pattern.c_str(), &found);
    if (running == -1) return false;
    do {
        DirectoryEntry entry = entry_of(narrow(found.name), found.attrib);
        if (!listed.empty() && (found.attrib & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
            leads_elsewhere(entry_path(listed, entry.name))) {
            entry.is_directory = false;
        }
        out.push_back(std::move(entry));
    } while (next(running, &found) == 0);
    const bool complete = errno == ENOENT;
    _findclose(running);
    return complete;
}

bool is_pattern(const std::string& path) {
    return path.find_first_of("*?", is_verbatim(path) ? 4 : 0) != path.npos;
}

bool find_matching(const std::string& pattern, std::vector<DirectoryEntry>& out) {
    // Nothing where a single entry is asked for.
    std::string listed;
    if (is_pattern(pattern)) {
        listed = pattern.substr(0, pattern.find_last_of("\\/:") + 1);
        if (listed.empty()) listed = ".\\";
    }
    if (!is_verbatim(pattern)) {
        return search<_finddata64i32_t>(_findfirst64i32, _findnext64i32, pattern, listed, out);
    }
    return search<_wfinddata64i32_t>(_wfindfirst64i32, _wfindnext64i32, wide(pattern), listed, out);
}

class Win32FileSystem final : public FileSystem {
public:
    FileHandle open(const char* path, OpenMode mode, bool write_through) override {
        const Opening how = opening(mode);
        SECURITY_ATTRIBUTES security{sizeof security, nullptr, how.inherited};
        const DWORD attributes = FILE_ATTRIBUTE_NORMAL | (write_through ? FILE_FLAG_WRITE_THROUGH : 0);
        const HANDLE file = call(CreateFileA, CreateFileW, path, how.access, how.sharing, &security,
                                 how.disposition, attributes, HANDLE{nullptr});
        return reinterpret_cast<FileHandle>(file);
    }

    bool read(FileHandle file, void* target, std::uint32_t size, std::uint32_t& done) override {
        DWORD count = 0;
        const bool ok = ReadFile(handle(file), target, size, &count, nullptr) != 0;
        done = count;
        return ok;
    }

    bool write(FileHandle file, const void* data, std::uint32_t size, std::uint32_t& done) override {
        DWORD count = 0;
        const bool ok = WriteFile(handle(file), data, size, &count, nullptr) != 0;
        done = count;
        return ok;
    }

    bool flush(FileHandle file) override { return FlushFileBuffers(handle(file)) != 0; }

    bool close(FileHandle file) override {
        // As a handle the number stands for the process itself, which may be closed as often as one likes.
        return file == no_file ? refuse(ERROR_INVALID_HANDLE) : CloseHandle(handle(file)) != 0;
    }

    bool make_temporary(const char* directory, const char* prefix, std::string& path) override {
        std::array<char, MAX_PATH> made;
        if (!GetTempFileNameA(*directory ? directory : ".", prefix, 0, made.data())) return false;
        path = made.data();
        return true;
    }

    bool take_rights(FileHandle file, const char* of) override { return copy_rights(handle(file), of); }

    bool info(const char* path, FileInfo& out) override {
        if (is_verbatim(path)) return verbatim_info(path, out);
        struct _stat64 info {};
        if (_stat64(without_last_separator(path).c_str(), &info) != 0) return false;
        out = {info.st_size, (info.st_mode & _S_IFDIR) != 0};
        return true;
    }

    bool access(const char* path, Access kind) override {
        return call(_access, _waccess, path, kind == Access::Exists ? 0 : 6) == 0;
    }

    bool find(const char* pattern, std::vector<DirectoryEntry>& out) override {
        out.clear();
        std::string matched = pattern;
        // No file has a name that matches others.
        if (is_verbatim(matched) && is_pattern(matched)) return refuse(ERROR_INVALID_NAME);
        if (is_verbatim(matched) && matched.ends_with('\\')) matched += '*';
        if (!find_matching(matched, out)) return false;
        std::sort(out.begin(), out.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
        return true;
    }

    bool remove(const char* path) override { return call(_unlink, _wunlink, path) == 0; }

    bool rename(const char* from, const char* to) override {
        if (is_verbatim(from) || is_verbatim(to)) {
            return MoveFileExW(wide(from).c_str(), wide(to).c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
        }
        return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING) != 0;
    }

    bool make_writable(const char* path) override {
        return call(_chmod, _wchmod, path, _S_IREAD | _S_IWRITE) == 0;
    }
};

}  // namespace

FileSystem& system_files() {
    static Win32FileSystem instance;
    return instance;
}

}  // namespace os
