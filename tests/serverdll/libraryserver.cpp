// A scripted server in the client's process. The client loads a library that hands everything on to here.
#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <stdexcept>

#include "lineserver.h"
#include "serverlibrary.h"

namespace test {

namespace {

using Time = std::chrono::steady_clock::time_point;

Time in(std::chrono::milliseconds time) { return std::chrono::steady_clock::now() + time; }

// Two queues of bytes between two threads.
class Pipe {
public:
    enum class End { none, client, closed, reset };
    static constexpr std::size_t capacity = 256 * 1024;

    // How many bytes went from the queue; 0 at the end or when the time is over.
    std::size_t take(std::string& queue, char* to, std::size_t size, Time end) {
        std::unique_lock lock(m_lock);
        m_changed.wait_until(lock, end, [&] { return !queue.empty() || m_end != End::none; });
        const std::size_t count = std::min(size, queue.size());
        queue.copy(to, count);
        queue.erase(0, count);
        m_changed.notify_all();
        return count;
    }

    // How many bytes went into the queue before the end, or before the time was over.
    std::size_t put(std::string& queue, std::string_view bytes, Time end) {
        std::size_t done = 0;
        std::unique_lock lock(m_lock);
        while (done < bytes.size()) {
            const auto has_room = [&] { return queue.size() < capacity || m_end != End::none; };
            if (!m_changed.wait_until(lock, end, has_room) || m_end != End::none) break;
            const std::string_view piece = bytes.substr(done, capacity - queue.size());
            queue += piece;
            done += piece.size();
            m_changed.notify_all();
        }
        return done;
    }

    void finish(End end) {
        const std::lock_guard guard(m_lock);
        if (m_end == End::none) m_end = end;
        if (end == End::reset) to_client.clear();
        m_changed.notify_all();
    }

    End end() {
        const std::lock_guard guard(m_lock);
        return m_end;
    }

    std::string to_client;
    std::string to_server;

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    End m_end = End::none;
};

class LibraryPeer : public Peer {
public:
    explicit LibraryPeer(std::shared_ptr<Pipe> pipe) : m_pipe(std::move(pipe)) {}
    ~LibraryPeer() override { m_pipe->finish(Pipe::End::closed); }

    void send(std::string_view bytes) override {
        if (m_pipe->put(m_pipe->to_client, bytes, in(std::chrono::seconds(10))) < bytes.size() &&
            m_pipe->end() == Pipe::End::none) {
            throw std::runtime_error("the fake server waits for too long");
        }
    }

    std::optional<std::string> read_line() override {
        std::size_t end = 0;
        for (std::size_t seen = 0; (end = m_input.find("\r\n", seen)) == std::string::npos;) {
            seen = m_input.size() - (m_input.ends_with('\r') ? 1 : 0);
            char bytes[65536];
            const std::size_t count =
                m_pipe->take(m_pipe->to_server, bytes, sizeof bytes, in(std::chrono::seconds(10)));
            m_input.append(bytes, count);
            if (count > 0) continue;
            if (m_pipe->end() != Pipe::End::none) return std::nullopt;
            throw std::runtime_error("the fake server waits for too long");
        }
        std::string line = m_input.substr(0, end);
        m_input.erase(0, end + 2);
        return line;
    }

    void close() override { m_pipe->finish(Pipe::End::closed); }
    void reset() override { m_pipe->finish(Pipe::End::reset); }

    std::size_t send_some(std::string_view bytes) override {
        return m_pipe->put(m_pipe->to_client, bytes, in(std::chrono::milliseconds(0)));
    }

private:
    std::shared_ptr<Pipe> m_pipe;
    std::string m_input;
};

class LibraryServer : public Server {
public:
    explicit LibraryServer(Script script) : Server(std::move(script)) {
        start([this] { return accept(); });
    }
    ~LibraryServer() override { finish(); }

    std::string connection_string() const override;

    void admit(std::shared_ptr<Pipe> pipe) {
        const std::lock_guard guard(m_lock);
        m_pipe = std::move(pipe);
        m_changed.notify_all();
    }

private:
    std::unique_ptr<Peer> accept() {
        std::unique_lock lock(m_lock);
        if (!m_changed.wait_for(lock, bound, [this] { return m_pipe != nullptr; })) return nullptr;
        return std::make_unique<LibraryPeer>(std::move(m_pipe));
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::shared_ptr<Pipe> m_pipe;
};

Pipe& pipe_of(ZXServerConnection* connection) {
    return **reinterpret_cast<std::shared_ptr<Pipe>*>(connection);
}

ZXServerConnection* open(const char* settings, char*, std::size_t) {
    void* server = nullptr;
    if (std::sscanf(settings, "%*p %p", &server) != 1) return nullptr;
    auto pipe = std::make_shared<Pipe>();
    static_cast<LibraryServer*>(server)->admit(pipe);
    return reinterpret_cast<ZXServerConnection*>(new std::shared_ptr<Pipe>(std::move(pipe)));
}

std::int32_t ended(Pipe::End end) {
    if (end == Pipe::End::none) return ZX_SERVER_TIMED_OUT;
    return end == Pipe::End::reset ? ZX_SERVER_RESET : ZX_SERVER_CLOSED;
}

std::int32_t read(ZXServerConnection* connection, char* to, std::size_t size, std::uint32_t at_most,
                  std::size_t* count) {
    Pipe& pipe = pipe_of(connection);
    *count = pipe.take(pipe.to_client, to, size, in(std::chrono::milliseconds(at_most)));
    return *count > 0 ? std::int32_t{ZX_SERVER_DONE} : ended(pipe.end());
}

std::int32_t write(ZXServerConnection* connection, const char* bytes, std::size_t size, std::uint32_t at_most,
                   std::size_t* count) {
    Pipe& pipe = pipe_of(connection);
    *count = pipe.put(pipe.to_server, {bytes, size}, in(std::chrono::milliseconds(at_most)));
    return *count == size ? std::int32_t{ZX_SERVER_DONE} : ended(pipe.end());
}

void shutdown(ZXServerConnection* connection) { pipe_of(connection).finish(Pipe::End::client); }

void close(ZXServerConnection* connection) {
    shutdown(connection);
    delete reinterpret_cast<std::shared_ptr<Pipe>*>(connection);
}

const ZXServerLibrary table = {
    ZX_SERVER_LIBRARY_VERSION, sizeof(ZXServerLibrary), open, read, write, shutdown, close};

std::string LibraryServer::connection_string() const {
    char settings[80];
    std::snprintf(settings, sizeof settings, " %p %p", static_cast<const void*>(&table),
                  static_cast<const void*>(this));
    return FAKE_LIBRARY + std::string(settings);
}

}  // namespace

std::unique_ptr<Server> serve_library(Script script) {
    return std::make_unique<LibraryServer>(std::move(script));
}

}  // namespace test
