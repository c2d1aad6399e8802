#include "zipper.h"

#include <minizip/zip.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <vector>

#include "errtrace.h"
#include "fastfile.h"
#include "fileops.h"
#include "mtrace.h"
#include "os/directories.h"
#include "os/file.h"
#include "os/localtime.h"
#include "os/mutex.h"
#include "os/path.h"

namespace {

constexpr const char* source = "zendrix/server/machine/src/zipper";
constexpr const char* files_to_archive = "MZipper::FilesToZippArchive";
constexpr const char* create_archive = "CreateZipArchive";

// What an entry's 32-bit length can't tell, or takes for the mark of a longer one.
constexpr std::int64_t too_large = 0xFFFFFFFF;

#define ZIPPER_TRACE(...)                                                    \
    do {                                                                     \
        if (::_MTrace_TestLevel("default", 4)) {                             \
            ::_MTrace_Location(source, __LINE__, "default", 4);              \
            ::_MTrace_Always("MZipper::FilesToZippArchive(): " __VA_ARGS__); \
        }                                                                    \
    } while (false)

bool is_separator(char c) { return c == '\\' || c == '/'; }

const zlib_filefunc64_def& runtime_files() {
    static const zlib_filefunc64_def functions = [] {
        zlib_filefunc64_def filled{};
        fill_fopen64_filefunc(&filled);
        return filled;
    }();
    return functions;
}

extern "C" uLong write_unless_abandoned(voidpf abandoned, voidpf stream, const void* data, uLong size) {
    if (*static_cast<bool*>(abandoned)) return size;
    return runtime_files().zwrite_file(runtime_files().opaque, stream, data, size);
}

// An empty file that is surely new: neither another's, nor one that a link leads to.
bool make_anew(const std::string& path) {
    os::FileSystem& files = os::files();
    files.remove(path.c_str());
    const os::FileHandle file = files.open(path.c_str(), os::OpenMode::CreateNew, false);
    return file != os::no_file && files.close(file);
}

zipFile open_archive(const std::string& path, bool& abandoned) {
    if (!make_anew(path)) return nullptr;
    zlib_filefunc64_def functions = runtime_files();
    functions.zwrite_file = write_unless_abandoned;
    functions.opaque = &abandoned;
    return zipOpen2_64(os::native_path(path).c_str(), APPEND_STATUS_CREATE, nullptr, &functions);
}

zip_fileinfo info_of_now() {
    const std::tm now = os::local_time(std::time(nullptr));
    zip_fileinfo info{};
    info.tmz_date.tm_sec = static_cast<uInt>(now.tm_sec);
    info.tmz_date.tm_min = static_cast<uInt>(now.tm_min);
    info.tmz_date.tm_hour = static_cast<uInt>(now.tm_hour);
    info.tmz_date.tm_mday = static_cast<uInt>(now.tm_mday);
    info.tmz_date.tm_mon = static_cast<uInt>(now.tm_mon);
    info.tmz_date.tm_year = static_cast<uInt>(now.tm_year + 1900);
    return info;
}

int open_entry(zipFile zip, const char* name) {
    // Its length has 16 bits in the archive; not every minizip looks.
    if (std::strlen(name) > 0xFFFF) return ZIP_PARAMERROR;
    const zip_fileinfo info = info_of_now();
    constexpr int not_raw = 0;
    constexpr int memory_level = 8;
    constexpr int no_zip64 = 0;
    return zipOpenNewFileInZip4_64(zip, name, &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                   Z_BEST_COMPRESSION, not_raw, -MAX_WBITS, memory_level, Z_DEFAULT_STRATEGY,
                                   nullptr, 0, 0, 0, no_zip64);
}

using Listing = std::vector<os::DirectoryEntry>;

// No directory at all stays none: with a separator it would be the root.
std::string with_separator(const std::string& directory) {
    return directory.empty() || is_separator(directory.back()) ? directory : directory + '/';
}

// The entries of a directory, sorted by name, without "." and "..".
bool list_directory(const std::string& path, Listing& found) {
    if (path.empty()) return false;
    const std::string all = os::is_verbatim(path) ? path : with_separator(path) + "*.*";
    if (!os::files().find(all.c_str(), found)) return false;
    std::erase_if(found, [](const auto& entry) { return entry.name == "." || entry.name == ".."; });
    return true;
}

void trace_listing(const std::string& directory, const Listing& listing) {
    for (const os::DirectoryEntry& entry : listing) {
        if (entry.is_directory) {
            ZIPPER_TRACE("found sub-folder [%s]", entry.name.c_str());
        } else {
            ZIPPER_TRACE("found file [%s]", (directory + entry.name).c_str());
        }
    }
}

bool refuse_too_large(const std::string& name, std::int64_t size) {
    MERRTRACE_REPORT(source, "%s(): file is too large [%s]: %lld", files_to_archive, name.c_str(),
                     static_cast<long long>(size));
    MERRTRACE_REPORT(source, "%s(): zipWriteInFileInZip() failed [%s]", files_to_archive, name.c_str());
    return false;
}

std::string report_unread(const std::string& path) {
    MERRTRACE_REPORT(source, "%s(): MFastfile_ReadAtOnce(%s, ...) failed", create_archive, path.c_str());
    return {};
}

// Reads the finished archive back, from the very file that was written: its path may lead to another by now.
// Empty after a failure.
std::string read_archive(MFastFileReader& file, const std::string& path) {
    os::FileInfo info;
    const std::int64_t expected = os::files().info(path.c_str(), info) ? info.size : 0;
    std::string archive;
    std::size_t room = static_cast<std::size_t>(std::max<std::int64_t>(expected, 0xFFFF)) + 1;
    for (;; room = archive.size()) {
        const std::size_t size = archive.size();
        archive.resize(size + room);
        const std::int64_t count = file.Read(archive.data() + size, room);
        if (count < 0) return report_unread(path);
        archive.resize(size + static_cast<std::size_t>(count));
        if (archive.size() < size + room) return archive;
    }
}

// Ends the archive and reads it back; empty after a failure.
std::string finish(MZipper& zipper, MFastFileReader& written, const std::string& path) {
    std::string archive;
    if (zipper.Close()) {
        archive = read_archive(written, path);
    } else {
        MERRTRACE_REPORT(source, "%s(): Close zip archive %s failed", create_archive, path.c_str());
    }
    written.Close();
    return archive;
}

// The archive is there; that the file stays is no reason to refuse it.
void remove_archive(const std::string& path) {
    const MErrTraceContext context(source);
    if (file_remove(path.c_str())) return;
    MERRTRACE_REPORT(source, "%s(): file_remove(%s) failed", create_archive, path.c_str());
}

}  // namespace

MZipper::MZipper() = default;

bool MZipper::Open(const std::string& path) {
    if (m_open) Close();
    m_path = path;
    m_failed = false;
    m_abandoned = false;
    m_zip = open_archive(path, m_abandoned);
    m_open = m_zip != nullptr;
    if (!m_open) {
        MERRTRACE_REPORT(source, "%s(): zipOpen64(%s) failed", "MZipper::Open", path.c_str());
        return false;
    }
    m_entryOpen = false;  // one that an archive before left open is none of this one
    return true;
}

bool MZipper::Close() {
    if (!m_open) return true;
    const int error = zipClose(m_zip, nullptr);
    m_zip = nullptr;
    m_open = false;
    if (error != ZIP_OK) {
        MERRTRACE_REPORT(source, "%s(): zipClose(%s) failed: %d", "MZipper::Close", m_path.c_str(), error);
    }
    return error == ZIP_OK && !m_failed;
}

void MZipper::Abandon() {
    if (!m_open) return;
    m_abandoned = true;
    zipClose(m_zip, nullptr);
    m_zip = nullptr;
    m_open = false;
}

bool MZipper::AddEntry(const char* name) {
    if (!m_open) return m_entryOpen;
    if (m_entryOpen) end_entry();
    while (is_separator(*name)) ++name;
    const int error = open_entry(m_zip, name);
    m_entryOpen = error == ZIP_OK;
    if (!m_entryOpen) {
        MERRTRACE_REPORT(source, "%s(): zipOpenNewFileInZip() failed [%s]: %d", "MZipper::AddEntry", name,
                         error);
    }
    return m_entryOpen;
}

void MZipper::CloseEntry() {
    if (m_entryOpen) end_entry();
}

// What was left to write of an entry may fail here, where no caller looks; the archive's end tells it.
void MZipper::end_entry() {
    m_entryOpen = false;
    const int error = m_open ? zipCloseFileInZip(m_zip) : ZIP_OK;
    if (error == ZIP_OK) return;
    MERRTRACE_REPORT(source, "%s(): zipCloseFileInZip(%s) failed: %d", "MZipper::CloseEntry", m_path.c_str(),
                     error);
    m_failed = true;
}

bool MZipper::FilesToZippArchive(const char* directory) { return pack_directory(directory, directory); }

// `name` is the path as the entries have it, `path` what leads to the directory on the disk: the same, unless
// a name on the way can only be written verbatim.
bool MZipper::pack_directory(const std::string& name, const std::string& path) {
    ZIPPER_TRACE("Start with [%s]", name.c_str());
    Listing listing;
    if (!list_directory(path, listing)) {
        MERRTRACE_REPORT(source, "%s(): SetPath() failed [%s]", files_to_archive, name.c_str());
        return false;
    }
    trace_listing(name, listing);
    bool packed = true;
    for (const os::DirectoryEntry& entry : listing) {
        if (entry.is_directory) continue;
        if (!pack_file(name + entry.name, os::entry_path(path, entry.name))) packed = false;
    }
    for (const os::DirectoryEntry& entry : listing) {
        if (!entry.is_directory) continue;
        const std::string folder = os::entry_path(path, entry.name);
        const char end = os::is_verbatim(folder) ? os::native_separator() : '\\';
        if (!pack_directory(name + entry.name + '\\', folder + end)) return false;
    }
    return packed;
}

bool MZipper::pack_file(const std::string& name, const std::string& path) {
    const std::int64_t size = file_size(path.c_str());
    if (size < 0) {
        MERRTRACE_REPORT(source, "%s():  file_size() failed [%s]", files_to_archive, name.c_str());
        return false;
    }
    if (size == 0) {
        ZIPPER_TRACE("found file with size=0 [%s]", name.c_str());
        return true;
    }
    if (size >= too_large) return refuse_too_large(name, size);
    std::string data;
    if (MFastFile_ReadAtOnce(path.c_str(), data) < 0) {
        MERRTRACE_REPORT(source, "%s(): MFastfile_ReadAtOnce(%s, ...) failed", files_to_archive,
                         name.c_str());
        return false;
    }
    // It may have grown meanwhile.
    const auto count = static_cast<std::int64_t>(data.size());
    return count < too_large ? write_entry(name, data) : refuse_too_large(name, count);
}

bool MZipper::write_entry(const std::string& name, const std::string& data) {
    if (!AddEntry(name.c_str())) {
        MERRTRACE_REPORT(source, "%s(): AddEntry() failed [%s]", files_to_archive, name.c_str());
        return false;
    }
    if (zipWriteInFileInZip(m_zip, data.data(), static_cast<unsigned>(data.size())) != ZIP_OK) {
        MERRTRACE_REPORT(source, "%s(): zipWriteInFileInZip() failed [%s]", files_to_archive, name.c_str());
        return false;
    }
    ZIPPER_TRACE("wrote file [%s], size: %td", name.c_str(), static_cast<std::ptrdiff_t>(data.size()));
    return true;
}

std::string temp_zip_path() { return os::temporary_directory() + "backup_tmp.zip"; }

std::string CreateZipArchive(const std::string& directory) {
    static os::Mutex one_at_a_time;
    const os::LockGuard guard(one_at_a_time);
    const std::string path = temp_zip_path();
    MZipper zipper;
    if (!zipper.Open(path)) {
        MERRTRACE_REPORT(source, "%s(): Open zip archive %s failed", create_archive, path.c_str());
        return {};
    }
    MFastFileReader written(path.c_str());
    if (!zipper.FilesToZippArchive(with_separator(directory).c_str())) {
        MERRTRACE_REPORT(source, "%s(): Files to zip archive failed", create_archive);
        zipper.Abandon();
        return {};
    }
    std::string archive = finish(zipper, written, path);
    remove_archive(path);
    return archive;
}
