#include "bounded_lines.h"

#include "exit_status.h"
#include "os/error.h"

namespace zxhost {
namespace {

constexpr std::uint32_t block = 1 << 16;

HostError unreadable(const std::string& file) {
    return HostError(ExitStatus::WrongUsage,
                     "the file " + file + " can't be read: " + os::error_text(os::last_error()),
                     "name a scan file, as zxhost scan --csv FILE writes it");
}

}  // namespace

BoundedLines::BoundedLines(const std::string& file)
    : m_file(file), m_handle(os::files().open(file.c_str(), os::OpenMode::Read, false)) {
    if (m_handle == os::no_file) throw unreadable(file);
}

BoundedLines::~BoundedLines() { os::files().close(m_handle); }

BoundedLines::Kind BoundedLines::next(std::string_view& line) {
    ++m_line;
    m_byte = m_next_byte;
    std::size_t end = m_buffer.find('\n', m_start);
    for (std::size_t seen = m_buffer.size() - m_start; end == std::string::npos;) {
        if (seen > longest_line || !fill()) break;
        end = m_buffer.find('\n', m_start + seen);
        seen = m_buffer.size() - m_start;
    }
    const bool ended = end != std::string::npos;
    line = std::string_view(m_buffer).substr(m_start, (ended ? end : m_buffer.size()) - m_start);
    m_start += line.size() + (ended ? 1 : 0);
    m_next_byte += line.size() + (ended ? 1 : 0);
    if (line.size() > longest_line) return Kind::TooLong;
    if (ended) return Kind::Line;
    return line.empty() ? Kind::End : Kind::Torn;
}

// Adds a block behind what is left; false at the end of the file.
bool BoundedLines::fill() {
    m_buffer.erase(0, m_start);
    m_start = 0;
    const std::size_t had = m_buffer.size();
    m_buffer.resize(had + block);
    std::uint32_t done = 0;
    const bool good = os::files().read(m_handle, m_buffer.data() + had, block, done);
    if (!good) throw unreadable(m_file);
    m_buffer.resize(had + done);
    return done > 0;
}

}  // namespace zxhost
