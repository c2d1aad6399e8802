// The simulated machine as a library in the client's process (zendrix/wire/serverlibrary.h).
//
// Connections with the same settings reach the same machine. It is there as long as one of them is: the
// last to close stops it, and with it the only thread of this library.
#include <algorithm>
#include <cstring>
#include <map>
#include <utility>

#include "os/mutex.h"
#include "serverlibrary.h"
#include "settings.h"

struct ZXServerConnection {
    std::shared_ptr<zendrix::sim::Server> server;
    std::shared_ptr<zendrix::sim::MemoryLink> link;
};

namespace zendrix::sim {

namespace {

std::unique_ptr<Server> make_server(const std::string& text) {
    Settings settings;
    CLI::App app("", "zendrix-sim.dll");
    app.allow_windows_style_options(false);
    app.set_help_flag();
    declare_settings(app, settings);
    app.parse(text);
    ServerOptions options;
    options.road = Road::none;
    std::unique_ptr<Server> server = make_server(settings, std::move(options));
    server->start();
    return server;
}

// The machines that are switched on.
class Machines {
public:
    std::shared_ptr<Server> find(const std::string& settings) {
        const os::LockGuard guard(m_lock);
        std::erase_if(m_machines, [](const auto& entry) { return entry.second.expired(); });
        std::weak_ptr<Server>& known = m_machines[settings];
        std::shared_ptr<Server> server = known.lock();
        if (!server) {
            server = make_server(settings);
            known = server;
        }
        return server;
    }

private:
    os::Mutex m_lock;
    std::map<std::string, std::weak_ptr<Server>> m_machines OS_GUARDED_BY(m_lock);
};

Machines& machines() {
    static Machines all;
    return all;
}

void copy_text(const char* text, char* to, std::size_t size) {
    if (to == nullptr || size == 0) return;
    const std::size_t length = std::min(std::strlen(text), size - 1);
    std::memcpy(to, text, length);
    to[length] = '\0';
}

ZXServerConnection* open(const char* settings, char* error, std::size_t error_size) {
    try {
        auto connection = std::make_unique<ZXServerConnection>();
        connection->server = machines().find(settings);
        connection->link = connection->server->connect();
        return connection.release();
    } catch (const std::exception& failure) {
        copy_text(failure.what(), error, error_size);
    } catch (...) {
        copy_text("unknown error", error, error_size);
    }
    return nullptr;
}

std::int32_t to_status(MemoryLink::Status status) {
    switch (status) {
        case MemoryLink::Status::done:
            return ZX_SERVER_DONE;
        case MemoryLink::Status::timed_out:
            return ZX_SERVER_TIMED_OUT;
        case MemoryLink::Status::closed:
            return ZX_SERVER_CLOSED;
        case MemoryLink::Status::reset:
            return ZX_SERVER_RESET;
    }
    return ZX_SERVER_FAILED;
}

template <class Move>
std::int32_t move_bytes(std::size_t* count, Move&& move) {
    try {
        const MemoryLink::Result result = move();
        *count = result.count;
        return to_status(result.status);
    } catch (...) {
        return ZX_SERVER_FAILED;
    }
}

std::int32_t read(ZXServerConnection* connection, char* to, std::size_t size, std::uint32_t at_most,
                  std::size_t* count) {
    return move_bytes(count, [&] {
        return connection->link->read({to, size}, std::chrono::milliseconds(at_most));
    });
}

std::int32_t write(ZXServerConnection* connection, const char* bytes, std::size_t size, std::uint32_t at_most,
                   std::size_t* count) {
    return move_bytes(count, [&] {
        return connection->link->write({bytes, size}, std::chrono::milliseconds(at_most));
    });
}

void shutdown(ZXServerConnection* connection) {
    try {
        connection->link->shutdown();
    } catch (...) {
        // no memory to tell the server; the end of the connection will
    }
}

void close(ZXServerConnection* connection) {
    shutdown(connection);
    delete connection;
}

const ZXServerLibrary table = {
    ZX_SERVER_LIBRARY_VERSION, sizeof(ZXServerLibrary), open, read, write, shutdown, close};

}  // namespace

}  // namespace zendrix::sim

extern "C" ZX_SERVER_LIBRARY_EXPORT const ZXServerLibrary* zx_server_library(void) {
    return &zendrix::sim::table;
}
