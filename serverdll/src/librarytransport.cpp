// A machine server in this process: a library that is loaded for the connection (serverlibrary.h).
#include <algorithm>
#include <cstring>

#include "os/file.h"
#include "os/library.h"
#include "serverlibrary.h"
#include "transport.h"

namespace serverdll {

namespace {

struct LibraryAddress {
    std::string library;
    std::string settings;
};

// The library's name ends with the first ".dll" that ends a word; if there is none, it is everything.
LibraryAddress split_address(const std::string& server) {
    constexpr std::string_view ending = ".dll ";
    const std::size_t found = server.find(ending);
    if (found == std::string::npos) return {server, ""};
    return {server.substr(0, found + ending.size() - 1), server.substr(found + ending.size())};
}

// A name without a directory means the file beside the client, if there is one.
std::string file_of(const std::string& library) {
    if (library.find_first_of("/\\:") != std::string::npos) return library;
    const std::string beside = os::code_directory() + library;
    return os::files().access(beside.c_str(), os::Access::Exists) ? beside : library;
}

const char* cause_of(std::int32_t status) {
    switch (status) {
        case ZX_SERVER_CLOSED:
            return "closed by the server";
        case ZX_SERVER_RESET:
            return "reset by the server";
        case ZX_SERVER_TIMED_OUT:
            return "the server takes no requests";
        default:
            return "the server's library failed";
    }
}

std::uint32_t to_time(milliseconds at_most) {
    return static_cast<std::uint32_t>(std::clamp<milliseconds::rep>(at_most.count(), 0, 3600000));
}

class LibraryTransport : public Transport {
public:
    ~LibraryTransport() override {
        if (m_connection != nullptr) m_table->close(m_connection);
    }

    // An empty text is success.
    std::string connect(const LibraryAddress& address) {
        const std::string name = "the library \"" + address.library + "\" ";
        if (!m_library.load(file_of(address.library)))
            return name + "can't be loaded: " + m_library.error_text();
        const std::string cause = find_table();
        if (!cause.empty()) return name + cause;
        char error[512] = "";
        m_connection = m_table->open(address.settings.c_str(), error, sizeof error);
        if (m_connection != nullptr) return "";
        error[sizeof error - 1] = '\0';
        return name + "opens no connection: " + error;
    }

    ReadResult read(std::span<char> to, milliseconds at_most) override {
        std::size_t count = 0;
        const std::int32_t status =
            m_table->read(m_connection, to.data(), to.size(), to_time(at_most), &count);
        if (status == ZX_SERVER_TIMED_OUT) return {};
        if (status == ZX_SERVER_DONE && count > 0 && count <= to.size())
            return {ReadStatus::bytes, count, ""};
        return {ReadStatus::ended, 0, cause_of(status)};
    }

    const char* write(std::string_view bytes, milliseconds at_most) override {
        std::size_t count = 0;
        const std::int32_t status =
            m_table->write(m_connection, bytes.data(), bytes.size(), to_time(at_most), &count);
        return status == ZX_SERVER_DONE ? nullptr : cause_of(status);
    }

    void shutdown() noexcept override { m_table->shutdown(m_connection); }

private:
    std::string find_table() {
        auto* const entry = m_library.function<ZXServerLibraryEntry>(ZX_SERVER_LIBRARY_ENTRY);
        if (entry == nullptr) return std::string("has no entry point \"") + ZX_SERVER_LIBRARY_ENTRY + "\"";
        m_table = entry();
        if (m_table == nullptr) return "gives no table of its functions";
        if (m_table->version != ZX_SERVER_LIBRARY_VERSION)
            return "speaks version " + std::to_string(m_table->version) +
                   " of the interface, and this client " + std::to_string(ZX_SERVER_LIBRARY_VERSION);
        return is_complete(*m_table) ? "" : "gives an incomplete table of its functions";
    }

    static bool is_complete(const ZXServerLibrary& table) {
        return table.size >= sizeof table && table.open != nullptr && table.read != nullptr &&
               table.write != nullptr && table.shutdown != nullptr && table.close != nullptr;
    }

    os::SharedLibrary m_library;
    const ZXServerLibrary* m_table = nullptr;
    ZXServerConnection* m_connection = nullptr;
};

}  // namespace

std::unique_ptr<Transport> connect_library(const std::string& server) {
    auto transport = std::make_unique<LibraryTransport>();
    const std::string cause = transport->connect(split_address(server));
    if (!cause.empty()) refuse_connection(server, cause);
    return transport;
}

}  // namespace serverdll
