#include "replystore.h"

#include <algorithm>

namespace serverdll {

namespace {

// What a kept line costs: its bytes and the string that holds them.
std::size_t cost(std::string_view line) noexcept { return line.size() + sizeof(std::string); }

}  // namespace

void ReplyStore::open(long id) {
    const os::LockGuard guard(m_lock);
    m_receivers[id];
}

bool ReplyStore::add(long id, std::string_view line) {
    const os::LockGuard guard(m_lock);
    const auto found = m_receivers.find(id);
    if (found == m_receivers.end() || m_bytes + cost(line) > m_mostBytes) return false;
    found->second.lines.emplace_back(line);
    m_bytes += cost(line);
    m_longest = std::max(m_longest, line.size());
    return true;
}

void ReplyStore::completed(long id) {
    const os::LockGuard guard(m_lock);
    const auto found = m_receivers.find(id);
    if (found == m_receivers.end()) return;
    found->second.completed = true;
    if (found->second.lines.empty()) m_receivers.erase(found);
}

void ReplyStore::drop(long id) {
    const os::LockGuard guard(m_lock);
    const auto found = m_receivers.find(id);
    if (found == m_receivers.end()) return;
    for (const std::string& line : found->second.lines) m_bytes -= cost(line);
    m_receivers.erase(found);
}

bool ReplyStore::has(long id) {
    const os::LockGuard guard(m_lock);
    return m_receivers.contains(id);
}

std::size_t ReplyStore::count(long id) {
    const os::LockGuard guard(m_lock);
    const auto found = m_receivers.find(id);
    return found == m_receivers.end() ? 0 : found->second.lines.size();
}

bool ReplyStore::take(long id, std::string& line) {
    const os::LockGuard guard(m_lock);
    const auto found = m_receivers.find(id);
    if (found == m_receivers.end() || found->second.lines.empty()) return false;
    line = std::move(found->second.lines.front());
    found->second.lines.pop_front();
    m_bytes -= cost(line);
    if (found->second.completed && found->second.lines.empty()) m_receivers.erase(found);
    return true;
}

std::string ReplyStore::joined(long id) {
    const os::LockGuard guard(m_lock);
    std::string all;
    const auto found = m_receivers.find(id);
    if (found == m_receivers.end()) return all;
    for (const std::string& line : found->second.lines) {
        const std::size_t first = line.find('"');
        const std::size_t last = line.rfind('"');
        if (first != last) all.append(line, first + 1, last - first - 1);
    }
    return all;
}

std::size_t ReplyStore::longest_line() {
    const os::LockGuard guard(m_lock);
    return m_longest;
}

}  // namespace serverdll
