#include "linesplitter.h"

#include <algorithm>
#include <cstring>

namespace wire {

namespace {

constexpr std::size_t told_of_long_line = 80;

}  // namespace

LineSplitter::LineSplitter(std::size_t limit, std::size_t read_size)
    : m_limit(limit), m_readSize(read_size) {}

std::span<char> LineSplitter::space() {
    if (m_begin > 0) {
        std::copy(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_begin),
                  m_buffer.begin() + static_cast<std::ptrdiff_t>(m_end), m_buffer.begin());
        m_searched -= m_begin;
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_buffer.size() - m_end < m_readSize)
        m_buffer.resize(std::max(m_end + m_readSize, m_buffer.size() * 2));
    return {m_buffer.data() + m_end, m_readSize};
}

void LineSplitter::written(std::size_t count) noexcept { m_end += std::min(count, m_buffer.size() - m_end); }

void LineSplitter::append(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::span<char> to = space();
        const std::size_t count = std::min(to.size(), bytes.size());
        std::memcpy(to.data(), bytes.data(), count);
        written(count);
        bytes.remove_prefix(count);
    }
}

void LineSplitter::skip(std::size_t count) noexcept {
    m_begin += std::min(count, m_end - m_begin);
    m_searched = std::max(m_searched, m_begin);
}

bool LineSplitter::skip_line() noexcept {
    const void* end = std::memchr(m_buffer.data() + m_begin, '\n', m_end - m_begin);
    m_skipping = end == nullptr;
    m_begin =
        m_skipping ? m_end : static_cast<std::size_t>(static_cast<const char*>(end) - m_buffer.data()) + 1;
    m_searched = m_begin;
    return !m_skipping;
}

Framing LineSplitter::next(std::string_view& line) noexcept {
    if (m_begin == m_end || (m_skipping && !skip_line())) return Framing::none;
    const char* const begin = m_buffer.data() + m_begin;
    const void* found = std::memchr(m_buffer.data() + m_searched, '\n', m_end - m_searched);
    std::size_t length = m_end - m_begin;
    if (found == nullptr) {
        m_searched = m_end;
        if (length <= m_limit + 1) return Framing::none;  // a CR may be the last byte
    } else {
        length = static_cast<std::size_t>(static_cast<const char*>(found) - begin);
        m_begin += length + 1;
        m_searched = m_begin;
        if (length > 0 && begin[length - 1] == '\r') --length;
        line = {begin, length};
        if (length <= m_limit) return Framing::line;
    }
    line = {begin, std::min(length, told_of_long_line)};
    if (found == nullptr) {
        m_begin = m_end;
        m_searched = m_end;
        m_skipping = true;
    }
    return Framing::too_long;
}

}  // namespace wire
