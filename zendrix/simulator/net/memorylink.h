// A connection inside the process: two queues of bytes, no socket. The client's end waits, the server's
// end calls back on the server's thread.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "net/stream.h"
#include "os/waitlock.h"

namespace zendrix::sim {

class MemoryLink {
public:
    enum class Status { done, timed_out, closed, reset };

    struct Result {
        Status status = Status::done;
        std::size_t count = 0;
    };

    explicit MemoryLink(asio::any_io_executor server) : m_executor(std::move(server)) {}

    // The client's end. Any thread; one reads and one writes at a time.
    Result read(std::span<char> to, std::chrono::milliseconds at_most);
    Result write(std::string_view bytes, std::chrono::milliseconds at_most);
    // Ends both, and wakes whoever waits there.
    void shutdown();

    // The server's end, as of Stream.
    void server_reads(std::span<char> to, Stream::Done done);
    void server_writes(std::string_view bytes, Stream::Done done);
    void server_ends(bool by_reset);

private:
    static constexpr std::size_t capacity = 256 * 1024;  // of each queue

    // What the server waits for. Its guard keeps the server's thread from ending before it has been told.
    struct Pending {
        std::span<char> to;
        std::string_view bytes;  // not yet taken
        std::size_t count = 0;   // moved
        Stream::Done done;
        asio::executor_work_guard<asio::any_io_executor> work;
    };
    struct Told {
        Pending pending;
        asio::error_code error;
    };
    using Completions = std::vector<Told>;
    enum class End { none, client, server, server_reset };

    Result end_of_client() const OS_REQUIRES(m_lock);
    Completions settle() OS_REQUIRES(m_lock);
    void settle_reader(Completions& completions) OS_REQUIRES(m_lock);
    void settle_writer(Completions& completions) OS_REQUIRES(m_lock);
    void tell(Completions completions) const;

    const asio::any_io_executor m_executor;
    os::Mutex m_lock;
    std::condition_variable m_changed;
    End m_end OS_GUARDED_BY(m_lock) = End::none;
    std::string m_to_server OS_GUARDED_BY(m_lock);
    std::string m_to_client OS_GUARDED_BY(m_lock);
    std::optional<Pending> m_reader OS_GUARDED_BY(m_lock);
    std::optional<Pending> m_writer OS_GUARDED_BY(m_lock);
};

// The server's end as a stream.
class MemoryStream : public Stream {
public:
    explicit MemoryStream(std::shared_ptr<MemoryLink> link) : m_link(std::move(link)) {}
    ~MemoryStream() override { m_link->server_ends(false); }

    void read(std::span<char> to, Done done) override { m_link->server_reads(to, std::move(done)); }
    void write(std::string_view bytes, Done done) override { m_link->server_writes(bytes, std::move(done)); }
    void close() override { m_link->server_ends(false); }
    void reset() override { m_link->server_ends(true); }

private:
    std::shared_ptr<MemoryLink> m_link;
};

}  // namespace zendrix::sim
