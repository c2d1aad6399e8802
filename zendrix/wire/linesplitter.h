// Bytes in, lines out: the framing of the line protocol (docs/protocol.md), without a socket.
//
// The owner of a connection asks for space(), reads into it, tells written(), and takes lines with next()
// until there is none. Memory stays within one line and one read. One thread at a time.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace wire {

// The longest line that either side accepts, without its end.
inline constexpr std::size_t max_line = 1048576;

enum class Framing {
    none,     // no whole line is there
    line,     // a line
    too_long  // a line over the limit: its first bytes are told once, the rest is skipped up to its end
};

class LineSplitter {
public:
    explicit LineSplitter(std::size_t limit = max_line, std::size_t read_size = 65536);

    // Where the next bytes go: at least read_size of them. Makes lines given out before invalid.
    std::span<char> space();
    // That many bytes were put at the begin of space().
    void written(std::size_t count) noexcept;
    // Both steps for bytes that stand elsewhere, of any number.
    void append(std::string_view bytes);

    // The next line, without its CR LF or LF. The view holds until the next space() or append().
    Framing next(std::string_view& line) noexcept;

    // What wasn't given out yet. It begins with a line, unless one over the limit is being skipped.
    std::string_view rest() const noexcept { return {m_buffer.data() + m_begin, m_end - m_begin}; }
    // Whoever has read whole lines in rest() by himself takes them away: that many bytes.
    void skip(std::size_t count) noexcept;

private:
    bool skip_line() noexcept;

    std::size_t m_limit;
    std::size_t m_readSize;
    std::vector<char> m_buffer;
    std::size_t m_begin = 0;     // of the bytes not given out
    std::size_t m_searched = 0;  // no LF stands before this
    std::size_t m_end = 0;
    bool m_skipping = false;  // inside a line over the limit
};

}  // namespace wire
