#include "linequeue.h"

#include <algorithm>
#include <cstring>

namespace serverdll {

namespace {

// Allocators give pieces of the greatest size back to the system when they are freed, and keep small ones.
constexpr std::size_t first_piece = std::size_t{16} << 10;
constexpr std::size_t greatest_piece = std::size_t{32} << 20;

}  // namespace

std::string_view LineQueue::line_at(const Piece& piece, std::size_t at) noexcept {
    std::size_t length = 0;
    std::memcpy(&length, piece.bytes.get() + at, sizeof length);
    return {piece.bytes.get() + at + sizeof length, length};
}

LineQueue::Piece& LineQueue::room_for(std::size_t size) {
    if (!m_pieces.empty() && m_pieces.back().size - m_pieces.back().end >= size) return m_pieces.back();
    const std::size_t next = m_pieces.empty() ? first_piece : m_pieces.back().size * 2;
    const std::size_t bytes = std::max(std::min(next, greatest_piece), size);
    m_pieces.push_back({std::make_unique_for_overwrite<char[]>(bytes), bytes, 0, 0});
    return m_pieces.back();
}

void LineQueue::push(std::string_view line) {
    Piece& piece = room_for(needed(line.size()));
    const std::size_t length = line.size();
    char* const to = piece.bytes.get() + piece.end;
    std::memcpy(to, &length, sizeof length);
    std::copy(line.begin(), line.end(), to + sizeof length);
    piece.end += needed(length);
    ++m_count;
}

void LineQueue::pop() {
    Piece& piece = m_pieces.front();
    piece.begin += needed(front().size());
    --m_count;
    if (piece.begin == piece.end) m_pieces.pop_front();
}

}  // namespace serverdll
