#include "net/memorylink.h"

#include <algorithm>

namespace zendrix::sim {

namespace {

using Time = std::chrono::steady_clock::time_point;

Time end_of(std::chrono::milliseconds at_most) { return std::chrono::steady_clock::now() + at_most; }

// Takes that many bytes from the queue's front.
void take(std::string& queue, char* to, std::size_t count) {
    queue.copy(to, count);
    queue.erase(0, count);
}

}  // namespace

MemoryLink::Result MemoryLink::end_of_client() const {
    return {m_end == End::server_reset ? Status::reset : Status::closed, 0};
}

MemoryLink::Result MemoryLink::read(std::span<char> to, std::chrono::milliseconds at_most) {
    const Time end = end_of(at_most);
    Completions completions;
    std::size_t count = 0;
    {
        os::WaitLock lock(m_lock);
        while (m_to_client.empty() && m_end == End::none) {
            if (!lock.wait_until(m_changed, end) && m_to_client.empty() && m_end == End::none)
                return {Status::timed_out, 0};
        }
        if (m_to_client.empty() || m_end == End::client) return end_of_client();
        count = std::min(to.size(), m_to_client.size());
        take(m_to_client, to.data(), count);
        completions = settle();
    }
    tell(std::move(completions));
    return {Status::done, count};
}

MemoryLink::Result MemoryLink::write(std::string_view bytes, std::chrono::milliseconds at_most) {
    const Time end = end_of(at_most);
    std::size_t written = 0;
    while (written < bytes.size()) {
        Completions completions;
        {
            os::WaitLock lock(m_lock);
            while (m_to_server.size() >= capacity && m_end == End::none) {
                if (!lock.wait_until(m_changed, end) && m_to_server.size() >= capacity && m_end == End::none)
                    return {Status::timed_out, written};
            }
            if (m_end != End::none) return {end_of_client().status, written};
            const std::string_view piece = bytes.substr(written, capacity - m_to_server.size());
            m_to_server += piece;
            written += piece.size();
            completions = settle();
        }
        tell(std::move(completions));
    }
    return {Status::done, written};
}

void MemoryLink::shutdown() {
    Completions completions;
    {
        const os::LockGuard guard(m_lock);
        if (m_end == End::none) m_end = End::client;
        completions = settle();
    }
    m_changed.notify_all();
    tell(std::move(completions));
}

void MemoryLink::server_reads(std::span<char> to, Stream::Done done) {
    Completions completions;
    {
        const os::LockGuard guard(m_lock);
        m_reader.emplace(Pending{to, {}, 0, std::move(done), asio::make_work_guard(m_executor)});
        completions = settle();
    }
    m_changed.notify_all();
    tell(std::move(completions));
}

void MemoryLink::server_writes(std::string_view bytes, Stream::Done done) {
    Completions completions;
    {
        const os::LockGuard guard(m_lock);
        m_writer.emplace(Pending{{}, bytes, 0, std::move(done), asio::make_work_guard(m_executor)});
        completions = settle();
    }
    m_changed.notify_all();
    tell(std::move(completions));
}

void MemoryLink::server_ends(bool by_reset) {
    Completions completions;
    {
        const os::LockGuard guard(m_lock);
        if (m_end == End::none) m_end = by_reset ? End::server_reset : End::server;
        if (by_reset) m_to_client.clear();
        completions = settle();
    }
    m_changed.notify_all();
    tell(std::move(completions));
}

// Whatever the server waits for and can now be told.
MemoryLink::Completions MemoryLink::settle() {
    Completions completions;
    if (m_reader) settle_reader(completions);
    if (m_writer) settle_writer(completions);
    return completions;
}

void MemoryLink::settle_reader(Completions& completions) {
    const bool ended_here = m_end == End::server || m_end == End::server_reset;
    if (m_to_server.empty() && m_end == End::none) return;
    asio::error_code error;
    if (ended_here) {
        error = asio::error::operation_aborted;
    } else if (m_to_server.empty()) {
        error = asio::error::eof;
    } else {
        m_reader->count = std::min(m_reader->to.size(), m_to_server.size());
        take(m_to_server, m_reader->to.data(), m_reader->count);
    }
    completions.push_back({std::move(*m_reader), error});
    m_reader.reset();
}

void MemoryLink::settle_writer(Completions& completions) {
    asio::error_code error;
    if (m_end == End::client) {
        error = asio::error::broken_pipe;
    } else if (m_end != End::none) {
        error = asio::error::operation_aborted;
    } else {
        const std::string_view piece = m_writer->bytes.substr(0, capacity - m_to_client.size());
        m_to_client += piece;
        m_writer->count += piece.size();
        m_writer->bytes.remove_prefix(piece.size());
        if (!m_writer->bytes.empty()) return;
    }
    completions.push_back({std::move(*m_writer), error});
    m_writer.reset();
}

void MemoryLink::tell(Completions completions) const {
    for (Told& told : completions) {
        asio::post(m_executor, [pending = std::move(told.pending), error = told.error] {
            pending.done(error, pending.count);
        });
    }
}

}  // namespace zendrix::sim
