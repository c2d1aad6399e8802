#include "scan_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <limits>

#include "exit_status.h"
#include "os/error.h"
#include "scan_footer.h"

namespace zxhost {

ScanWriter::ScanWriter(const std::string& file, const ScanHeader& header)
    : m_file(file), m_columns(header.columns.size()) {
    m_handle = os::files().open(file.c_str(), os::OpenMode::Truncate, false);
    if (m_handle == os::no_file)
        throw HostError(ExitStatus::WrongUsage,
                        "the file " + file + " can't be written: " + os::error_text(os::last_error()),
                        "name a file in a directory where you may write");
    m_lines = header_text(header);
    flush();
}

ScanWriter::~ScanWriter() {
    if (m_handle != os::no_file) os::files().close(m_handle);
}

void ScanWriter::add(const std::vector<double>& point) {
    ++m_points;
    if (point.size() != m_columns && m_odd_point == 0) {
        m_odd_point = m_points;
        m_odd_count = point.size();
    }
    for (std::size_t i = 0; i < point.size(); ++i) {
        if (i) m_lines += ',';
        fmt::format_to(std::back_inserter(m_lines), "{}", point[i]);
    }
    m_lines += '\n';
    constexpr std::size_t enough = 1 << 20;
    if (m_lines.size() > enough) flush();
}

void ScanWriter::flush() {
    if (m_lines.empty()) return;
    m_crc = crc_of(m_lines, m_crc);
    write(m_lines);
    m_lines.clear();
}

void ScanWriter::finish() {
    std::string odd;
    if (m_odd_point)
        odd = fmt::format("point {} has {} numbers in place of {}", m_odd_point, m_odd_count, m_columns);
    end(odd.empty(), odd);
    if (!odd.empty())
        throw HostError(ExitStatus::MachineError, m_file + ": " + odd,
                        "another client may have chosen other scan data meanwhile: scan again");
}

void ScanWriter::cut(const std::string& why) { end(false, why); }

void ScanWriter::end(bool whole, const std::string& why) {
    flush();
    if (m_handle == os::no_file) return;
    write(footer_text({whole, m_points, m_crc, why}));
    if (!os::files().flush(m_handle)) fail();
    close();
}

void ScanWriter::write(std::string_view bytes) {
    while (m_handle != os::no_file && !bytes.empty()) {
        const std::size_t most = std::numeric_limits<std::int32_t>::max();
        std::uint32_t done = 0;
        const auto size = static_cast<std::uint32_t>(std::min(bytes.size(), most));
        if (!os::files().write(m_handle, bytes.data(), size, done) || done == 0) fail();
        bytes.remove_prefix(done);
    }
}

void ScanWriter::close() {
    const os::FileHandle handle = m_handle;
    m_handle = os::no_file;
    if (!os::files().close(handle)) fail();
}

void ScanWriter::fail() {
    const std::string reason = os::error_text(os::last_error());
    if (m_handle != os::no_file) os::files().close(m_handle);
    m_handle = os::no_file;
    throw HostError(ExitStatus::WrongUsage, "writing " + m_file + " failed: " + reason,
                    "what came before is in the file; is there room on the disk?");
}

}  // namespace zxhost
