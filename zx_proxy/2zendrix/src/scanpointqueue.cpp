#include "scanpointqueue.h"

#include <utility>

namespace {

// What is kept at the most: so many chunks, and in each place a vector for so many values.
constexpr std::size_t max_spares = 128;
constexpr std::size_t max_kept_values = 64;

}  // namespace

// So that keeping a chunk can't fail half-way through handing out a point.
ScanPointQueue::ScanPointQueue() { m_spares.reserve(max_spares); }

bool ScanPointQueue::empty() const { return m_chunks.empty() || (m_chunks.size() == 1 && m_first == m_end); }

void ScanPointQueue::push(const std::vector<double>& point) {
    if (m_end == chunk_points) add_chunk();
    (*m_chunks.back())[m_end].assign(point.begin(), point.end());
    ++m_end;
}

void ScanPointQueue::add_chunk() {
    if (m_spares.empty()) {
        m_chunks.push_back(std::make_unique<Chunk>());
    } else {
        m_chunks.push_back(std::move(m_spares.back()));
        m_spares.pop_back();
    }
    m_end = 0;
}

bool ScanPointQueue::pop(std::vector<double>& point) {
    if (empty()) return false;
    std::vector<double>& place = (*m_chunks.front())[m_first];
    place.swap(point);
    leave_place(place);
    return true;
}

void ScanPointQueue::leave_place(std::vector<double>& place) {
    // Points are small: a large vector is the host's own, and not to be hoarded.
    if (place.capacity() > max_kept_values) std::vector<double>().swap(place);
    ++m_first;
    if (empty()) {
        // Begin again at the front, where the memory is warm.
        m_first = m_end = 0;
    } else if (m_first == chunk_points) {
        retire_chunk();
    }
}

void ScanPointQueue::retire_chunk() {
    if (m_spares.size() < max_spares) m_spares.push_back(std::move(m_chunks.front()));
    m_chunks.pop_front();
    m_first = 0;
}
