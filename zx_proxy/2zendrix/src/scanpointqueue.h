// A queue of scan points that keeps the memory of the points that were taken for those to come.
//
// Points lie in chunks of vectors. Taking one swaps the caller's vector into its place, where the next round
// of that chunk fills it again. No locks: the owner's.
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

class ScanPointQueue {
public:
    ScanPointQueue();

    // Appends a copy. If memory runs out, the queue stays as it was.
    void push(const std::vector<double>& point);

    // Swaps the oldest point into `point` and returns true; false, and `point` as it was, if there is none.
    bool pop(std::vector<double>& point);

private:
    static constexpr std::size_t chunk_points = 128;
    using Chunk = std::array<std::vector<double>, chunk_points>;

    bool empty() const;
    void add_chunk();
    void leave_place(std::vector<double>& place);
    void retire_chunk();

    std::deque<std::unique_ptr<Chunk>> m_chunks;  // the oldest first
    std::vector<std::unique_ptr<Chunk>> m_spares;
    std::size_t m_first = 0;           // the oldest point in the first chunk
    std::size_t m_end = chunk_points;  // the free place in the last chunk
};
