#include "cachedaxes.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace {

// FNV-1a; `end` is left at the name's end.
std::size_t hash_of(const char* name, const char*& end) {
    std::uint32_t hash = 2166136261U;
    for (end = name; *end != '\0'; ++end) hash = (hash ^ static_cast<unsigned char>(*end)) * 16777619U;
    return hash ^ (hash >> 15);
}

}  // namespace

void CachedAxes::add(const std::string& name) {
    auto it =
        std::lower_bound(m_axes.begin(), m_axes.end(), name,
                         [](const Axis& axis, const std::string& wanted) { return axis.name < wanted; });
    if (it == m_axes.end() || it->name != name) it = m_axes.insert(it, {name, 0.0});
    store(static_cast<std::size_t>(it - m_axes.begin()), 0.0);
    rebuild_table();
}

void CachedAxes::rebuild_table() {
    std::size_t size = 4;
    while (size < 2 * m_axes.size()) size *= 2;
    m_table.assign(size, 0);
    for (std::size_t place = 0; place < m_axes.size(); ++place) {
        const char* end = nullptr;
        std::size_t slot = hash_of(m_axes[place].name.c_str(), end) & (size - 1);
        while (m_table[slot] != 0) slot = (slot + 1) & (size - 1);
        m_table[slot] = static_cast<std::uint32_t>(place + 1);
    }
}

void CachedAxes::store(std::size_t place, double value) {
    std::atomic_ref<double>(m_axes[place].value).store(value, std::memory_order_relaxed);
}

bool CachedAxes::read(const char* name, double& value) const {
    if (m_axes.empty()) return false;
    const char* end = nullptr;
    const std::size_t mask = m_table.size() - 1;
    std::size_t slot = hash_of(name, end) & mask;
    const auto length = static_cast<std::size_t>(end - name);
    for (; m_table[slot] != 0; slot = (slot + 1) & mask) {
        const Axis& axis = m_axes[m_table[slot] - 1];
        if (axis.name.size() != length || std::memcmp(axis.name.data(), name, length) != 0) continue;
        value = std::atomic_ref<double>(axis.value).load(std::memory_order_relaxed);
        return true;
    }
    return false;
}
