// Lines that wait, oldest first: few allocations for many lines, and memory that goes back to the system
// while a long queue is being emptied into something else.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

namespace serverdll {

class LineQueue {
public:
    std::size_t size() const noexcept { return m_count; }
    bool empty() const noexcept { return m_count == 0; }

    void push(std::string_view line);
    // The oldest; there must be one.
    std::string_view front() const noexcept { return line_at(m_pieces.front(), m_pieces.front().begin); }
    void pop();

    template <typename Visit>
    void for_each(Visit&& visit) const {
        for (const Piece& piece : m_pieces) {
            for (std::size_t at = piece.begin; at < piece.end; at += needed(line_at(piece, at).size()))
                visit(line_at(piece, at));
        }
    }

private:
    // Each line stands behind its length.
    struct Piece {
        std::unique_ptr<char[]> bytes;
        std::size_t size;
        std::size_t begin;
        std::size_t end;
    };

    static std::size_t needed(std::size_t length) noexcept { return sizeof(std::size_t) + length; }
    static std::string_view line_at(const Piece& piece, std::size_t at) noexcept;
    Piece& room_for(std::size_t size);

    std::deque<Piece> m_pieces;
    std::size_t m_count = 0;
};

}  // namespace serverdll
