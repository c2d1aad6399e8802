#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "os/file.h"
#include "os/path.h"
#include "system_files.h"

namespace os {

namespace {

int open_flags(OpenMode mode) {
    switch (mode) {
        case OpenMode::Read:
            return O_RDONLY;
        case OpenMode::CreateNew:
            return O_WRONLY | O_CREAT | O_EXCL;
        case OpenMode::Append:
            return O_WRONLY | O_CREAT | O_APPEND;
        case OpenMode::Truncate:
            return O_WRONLY | O_CREAT | O_TRUNC;
    }
    return O_RDONLY;
}

int descriptor(FileHandle file) { return static_cast<int>(file); }

bool is_directory(const struct stat& info) { return S_ISDIR(info.st_mode); }

// The system lets a directory be opened for reading.
bool refuse_directory(int fd) {
    struct stat info {};
    if (fstat(fd, &info) != 0 || !is_directory(info)) return true;
    ::close(fd);
    errno = EISDIR;
    return false;
}

// "." and ".." are told as they are on every system, not as hidden.
bool is_hidden(const std::string& name) { return name.starts_with('.') && name != "." && name != ".."; }

struct SplitPath {
    std::string directory;  // with its separator, or empty
    std::string last;
};

SplitPath split(const std::string& native) {
    const std::size_t slash = native.rfind('/');
    if (slash == native.npos) return {"", native};
    return {native.substr(0, slash + 1), native.substr(slash + 1)};
}

bool find_literal(const SplitPath& path, std::vector<DirectoryEntry>& out) {
    struct stat info {};
    if (stat((path.directory + path.last).c_str(), &info) != 0) return false;
    out.push_back({path.last, is_directory(info), is_hidden(path.last)});
    return true;
}

// Links are told as what they are, so that nobody walks through one into another tree.
DirectoryEntry entry_of(DIR* directory, const char* name) {
    struct stat info {};
    const bool known = fstatat(dirfd(directory), name, &info, AT_SYMLINK_NOFOLLOW) == 0;
    return {name, known && is_directory(info), is_hidden(name)};
}

bool find_matching(const SplitPath& path, const char* pattern, std::vector<DirectoryEntry>& out) {
    DIR* const directory = opendir(path.directory.empty() ? "." : path.directory.c_str());
    if (!directory) return false;
    errno = 0;
    while (const dirent* const entry = readdir(directory)) {
        if (fnmatch(pattern, entry->d_name, FNM_NOESCAPE) == 0) {
            out.push_back(entry_of(directory, entry->d_name));
        }
        errno = 0;
    }
    const int error = errno;
    closedir(directory);
    std::sort(out.begin(), out.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    errno = out.empty() && error == 0 ? ENOENT : error;
    return errno == 0;
}

// Four hexadecimal digits that change from call to call and differ between processes.
std::string temporary_number() {
    static std::atomic<unsigned> counter{static_cast<unsigned>(getpid()) * 7919U};
    constexpr char digits[] = "0123456789abcdef";
    const unsigned number = counter++;
    std::string text;
    for (unsigned shift = 16; shift > 0; shift -= 4) text += digits[(number >> (shift - 4)) & 0xF];
    return text;
}

// The system may stop halfway through a large piece; the caller shall not see that.
template <class Call, class Byte>
bool transfer(Call call, FileHandle file, Byte* bytes, std::uint32_t size, std::uint32_t& done) {
    done = 0;
    while (done < size) {
        const ssize_t count = call(descriptor(file), bytes + done, size - done);
        if (count == 0) return true;
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) done += static_cast<std::uint32_t>(count);
    }
    return true;
}

class PosixFileSystem final : public FileSystem {
public:
    FileHandle open(const char* path, OpenMode mode, bool write_through) override {
        const int flags = open_flags(mode) | O_CLOEXEC | (write_through ? O_DSYNC : 0);
        const int fd = ::open(native_path(path).c_str(), flags, 0666);
        if (fd < 0 || !refuse_directory(fd)) return no_file;
        return fd;
    }

    bool read(FileHandle file, void* target, std::uint32_t size, std::uint32_t& done) override {
        return transfer(::read, file, static_cast<char*>(target), size, done);
    }

    bool write(FileHandle file, const void* data, std::uint32_t size, std::uint32_t& done) override {
        return transfer(::write, file, static_cast<const char*>(data), size, done);
    }

    bool flush(FileHandle file) override { return fsync(descriptor(file)) == 0; }
    bool close(FileHandle file) override { return ::close(descriptor(file)) == 0; }

    bool make_temporary(const char* directory, const char* prefix, std::string& path) override {
        std::string start = native_path(*directory ? directory : ".");
        if (!start.ends_with('/')) start += '/';
        start += prefix;
        for (int tries = 0; tries < 0x10000; ++tries) {
            const std::string name = start + temporary_number() + ".tmp";
            // With the rights of any new file.
            const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (fd < 0 && errno == EEXIST) continue;
            if (fd < 0) return false;
            ::close(fd);
            path = name;
            return true;
        }
        return false;
    }

    bool take_rights(FileHandle file, const char* of) override {
        struct stat old {};
        if (stat(native_path(of).c_str(), &old) != 0) return false;
        // The owner first, since a change of it takes bits of the mode away. Only root may give files away.
        const bool owned = fchown(descriptor(file), old.st_uid, old.st_gid) == 0;
        return fchmod(descriptor(file), old.st_mode & 0777) == 0 && owned;
    }

    bool info(const char* path, FileInfo& out) override {
        struct stat info {};
        if (stat(native_path(path).c_str(), &info) != 0) return false;
        out = {info.st_size, is_directory(info)};
        return true;
    }

    bool access(const char* path, Access kind) override {
        return ::access(native_path(path).c_str(), kind == Access::Exists ? F_OK : R_OK | W_OK) == 0;
    }

    bool find(const char* pattern, std::vector<DirectoryEntry>& out) override {
        const SplitPath path = split(native_path(pattern));
        out.clear();
        if (is_verbatim(pattern) && !path.last.empty()) return find_literal(path, out);
        if (path.last == "*.*" || is_verbatim(pattern)) return find_matching(path, "*", out);
        if (find_literal(path, out)) return true;
        if (path.last.find_first_of("*?") == path.last.npos) return false;
        // A '[' is an ordinary byte of a name here.
        std::string matched;
        for (const char c : path.last) matched += c == '[' ? "[[]" : std::string(1, c);
        return find_matching(path, matched.c_str(), out);
    }

    bool remove(const char* path) override { return unlink(native_path(path).c_str()) == 0; }

    bool rename(const char* from, const char* to) override {
        return std::rename(native_path(from).c_str(), native_path(to).c_str()) == 0;
    }

    bool make_writable(const char* path) override {
        return chmod(native_path(path).c_str(), S_IRUSR | S_IWUSR) == 0;
    }
};

}  // namespace

FileSystem& system_files() {
    static PosixFileSystem instance;
    return instance;
}

}  // namespace os
