#include "replystore.h"

#include <algorithm>

namespace serverdll {

namespace {

// What a kept line costs: its bytes and what goes with each.
std::size_t cost(std::string_view line) noexcept { return line.size() + 32; }

}  // namespace

void ReplyStore::open(long id) {
    const os::LockGuard guard(m_lock);
    m_receivers[id];
}

bool ReplyStore::add(long id, std::string_view line) {
    const os::LockGuard guard(m_lock);
    const auto found = m_receivers.find(id);
    if (found == m_receivers.end() || found->second.gave_up) return true;
    if (m_bytes + cost(line) > m_mostBytes) {
        forget_lines(found->second);
        found->second.gave_up = true;
        return false;
    }
    found->second.lines.push(line);
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
    forget_lines(found->second);
    m_receivers.erase(found);
}

void ReplyStore::forget_lines(Receiver& receiver) {
    std::size_t bytes = 0;
    receiver.lines.for_each([&](std::string_view line) { bytes += cost(line); });
    receiver.lines = LineQueue();
    m_bytes -= bytes;
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
    line = found->second.lines.front();
    found->second.lines.pop();
    m_bytes -= cost(line);
    if (found->second.completed && found->second.lines.empty()) m_receivers.erase(found);
    return true;
}

std::string ReplyStore::joined(long id) {
    const os::LockGuard guard(m_lock);
    std::string all;
    const auto found = m_receivers.find(id);
    if (found == m_receivers.end()) return all;
    found->second.lines.for_each([&](std::string_view line) {
        const std::size_t first = line.find('"');
        const std::size_t last = line.rfind('"');
        if (first != last) all.append(line, first + 1, last - first - 1);
    });
    return all;
}

std::size_t ReplyStore::longest_line() {
    const os::LockGuard guard(m_lock);
    return m_longest;
}

}  // namespace serverdll
