#include "zip_check.h"

#include <fmt/format.h>
#include <minizip/unzip.h>

#include <array>
#include <fstream>
#include <string_view>
#include <vector>

#include "exit_status.h"
#include "number_text.h"
#include "os/path.h"

namespace zxhost {
namespace {

[[noreturn]] void damaged(const std::string& what) {
    throw HostError(ExitStatus::MachineError, "the archive is damaged: " + what, "make it again");
}

// The record that ends every archive. minizip is content with a part of it, and takes an archive for none
// that holds nothing else.
constexpr std::streamoff end_size = 22;
constexpr std::string_view end_mark("PK\5\6", 4);

// Whether the archive has entries at all.
bool check_end(const std::string& path) {
    std::ifstream in(os::native_path(path), std::ios::binary | std::ios::ate);
    const std::streamoff size = in.tellg();
    std::array<char, end_size> end{};
    if (size < end_size || !in.seekg(size - end_size).read(end.data(), end_size) ||
        !std::string_view(end.data(), end_size).starts_with(end_mark) || end[20] != 0 || end[21] != 0)
        damaged("its end is missing");
    return size > end_size;
}

class ZipReader {
public:
    explicit ZipReader(const std::string& path) : m_zip(unzOpen64(os::native_path(path).c_str())) {
        if (!m_zip) damaged("it has no directory of its entries");
    }
    ~ZipReader() { unzClose(m_zip); }
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    std::uint64_t count() {
        unz_global_info64 info{};
        if (unzGetGlobalInfo64(m_zip, &info) != UNZ_OK) damaged("it doesn't say how much it holds");
        return info.number_entry;
    }

    void step(bool is_first) {
        if ((is_first ? unzGoToFirstFile(m_zip) : unzGoToNextFile(m_zip)) != UNZ_OK)
            damaged("it lacks an entry that it counts");
    }

    // The length of the entry that it stands at.
    std::uint64_t check_entry() {
        const unz_file_info64 info = entry_info();
        if (unzOpenCurrentFile(m_zip) != UNZ_OK) damaged(m_name + " can't be opened");
        std::uint64_t length = 0;
        int done = 0;
        while ((done = unzReadCurrentFile(m_zip, m_piece.data(), static_cast<unsigned>(m_piece.size()))) > 0)
            length += static_cast<std::uint64_t>(done);
        const int end = unzCloseCurrentFile(m_zip);
        if (done < 0) damaged(m_name + " can't be unpacked");
        if (end == UNZ_CRCERROR) damaged(m_name + " has another checksum than it should");
        if (end != UNZ_OK || length != info.uncompressed_size)
            damaged(fmt::format("{} has {} bytes in place of {}", m_name, length, info.uncompressed_size));
        return length;
    }

private:
    unz_file_info64 entry_info() {
        unz_file_info64 info{};
        std::vector<char> name(1 << 16);  // a name has no more
        if (unzGetCurrentFileInfo64(m_zip, &info, name.data(), static_cast<uLong>(name.size()), nullptr, 0,
                                    nullptr, 0) != UNZ_OK)
            damaged("an entry has no description");
        m_name = printable(std::string(name.data(), info.size_filename));
        return info;
    }

    unzFile m_zip;
    std::string m_name;
    std::array<char, 1 << 16> m_piece{};
};

}  // namespace

ZipFacts check_zip(const std::string& path) {
    ZipFacts facts;
    if (!check_end(path)) return facts;
    ZipReader reader(path);
    const std::uint64_t count = reader.count();
    for (; facts.entries < count; ++facts.entries) {
        reader.step(facts.entries == 0);
        facts.bytes += reader.check_entry();
    }
    return facts;
}

}  // namespace zxhost
