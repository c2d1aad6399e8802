#include "requesttable.h"

#include <algorithm>

namespace serverdll {

namespace {

void fail(Exchange& exchange, std::string_view text) {
    if (!exchange.failed) exchange.error = text;
    exchange.failed = true;
}

}  // namespace

void RequestTable::finish(Exchange& exchange) { exchange.done.store(true, std::memory_order_release); }

RequestTable::Entry* RequestTable::find(long id) {
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(), [id](const Entry& e) { return e.id == id; });
    return found == m_entries.end() ? nullptr : &*found;
}

bool RequestTable::add(long id, Exchange& exchange) {
    const os::LockGuard guard(m_lock);
    exchange.lost = !m_lost.empty();
    if (exchange.lost) {
        fail(exchange, m_lost);
    } else if (m_entries.size() >= m_options.open_requests) {
        fail(exchange, "too many open requests");
    } else {
        m_entries.push_back({id, exchange.kind, &exchange, false, false});
    }
    return !exchange.failed;
}

void RequestTable::add_heartbeat(long id) {
    const os::LockGuard guard(m_lock);
    m_entries.push_back({id, RequestKind::heartbeat, nullptr, false, false});
}

bool RequestTable::abandon(long id, Exchange& exchange) {
    const os::LockGuard guard(m_lock);
    Entry* const entry = find(id);
    if (entry == nullptr || exchange.done.load(std::memory_order_relaxed)) return false;
    entry->exchange = nullptr;
    entry->abandoned = true;
    return true;
}

void RequestTable::accepted(long id) {
    const os::LockGuard guard(m_lock);
    Entry* const entry = find(id);
    if (entry == nullptr || entry->accepted) return;
    entry->accepted = true;
    if (entry->exchange == nullptr) return;
    Exchange& exchange = *entry->exchange;
    exchange.accepted.store(true, std::memory_order_release);
    if (exchange.until_end) return;
    entry->exchange = nullptr;
    finish(exchange);
}

bool RequestTable::data(long id, std::string_view body) {
    const os::LockGuard guard(m_lock);
    const Entry* const entry = find(id);
    if (entry == nullptr || entry->abandoned) return false;
    if (entry->kind == RequestKind::receive) return true;
    if (entry->kind != RequestKind::query || entry->exchange == nullptr) return false;
    std::string& data = entry->exchange->data;
    if (data.size() + body.size() >= m_options.answer_bytes) {
        fail(*entry->exchange, "the answer is too long");
        data.clear();
    } else if (!entry->exchange->failed) {
        data.append(body).push_back('\n');
    }
    return false;
}

std::optional<Delivery> RequestTable::message(Delivery::Kind kind, long id, std::string_view text) {
    Delivery told{kind, id, 0, 0, std::string(text), {}};
    const os::LockGuard guard(m_lock);
    const Entry* const entry = find(id);
    if (entry == nullptr) return told;
    if (entry->abandoned || entry->kind == RequestKind::heartbeat) return std::nullopt;
    if (entry->kind == RequestKind::query) told.id = 0;
    if (entry->exchange == nullptr) return told;
    if (kind == Delivery::Kind::error) {
        fail(*entry->exchange, text);
        entry->exchange->told = true;
    }
    if (!entry->exchange->tells_by_itself) return told;
    entry->exchange->messages.push_back(std::move(told));
    return std::nullopt;
}

bool RequestTable::takes_points(long id) {
    const os::LockGuard guard(m_lock);
    Entry* const entry = find(id);
    if (entry == nullptr || entry->abandoned || entry->kind == RequestKind::heartbeat) return false;
    if (entry->kind == RequestKind::transaction) entry->kind = RequestKind::scan;
    return true;
}

RequestTable::Ended RequestTable::ready(long id) {
    const os::LockGuard guard(m_lock);
    Entry* const entry = find(id);
    if (entry == nullptr) return {};
    Exchange* const exchange = entry->exchange;
    Ended ended{entry->kind, true, exchange == nullptr || exchange->failed, false};
    const bool starts = entry->kind != RequestKind::query && entry->kind != RequestKind::heartbeat;
    // An end without acceptance or error is an acceptance and an end.
    const bool refused = !entry->accepted && ended.failed;
    ended.completes = starts && !entry->abandoned && !refused;
    if (exchange != nullptr) {
        if (!refused) exchange->accepted.store(true, std::memory_order_relaxed);
        finish(*exchange);
    }
    *entry = m_entries.back();
    m_entries.pop_back();
    return ended;
}

std::vector<long> RequestTable::lose(const std::string& cause) {
    const os::LockGuard guard(m_lock);
    std::vector<long> scans;
    for (const Entry& entry : m_entries) {
        if (entry.kind == RequestKind::scan && entry.accepted && !entry.abandoned) scans.push_back(entry.id);
        if (entry.exchange == nullptr) continue;
        fail(*entry.exchange, cause);
        entry.exchange->lost = true;
        finish(*entry.exchange);
    }
    m_entries.clear();
    if (m_lost.empty()) m_lost = cause;
    return scans;
}

}  // namespace serverdll
