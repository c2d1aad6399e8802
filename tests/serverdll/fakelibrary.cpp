// A library with a machine server in it, whose server is the test itself: the settings begin with the address
// of a table like the library's own, and everything goes on to there.
//
// What it is built with makes it a wrong one: FAKE_ENTRY another name of the entry point, FAKE_VERSION
// another version of the table, FAKE_TABLE another table.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "serverlibrary.h"

#if !defined(FAKE_ENTRY)
#define FAKE_ENTRY zx_server_library
#endif
#if !defined(FAKE_VERSION)
#define FAKE_VERSION ZX_SERVER_LIBRARY_VERSION
#endif
#if !defined(FAKE_TABLE)
#define FAKE_TABLE &table
#endif

struct ZXServerConnection {
    const ZXServerLibrary* test;
    ZXServerConnection* connection;
};

namespace {

ZXServerConnection* open(const char* settings, char* error, std::size_t size) {
    void* test = nullptr;
    if (std::sscanf(settings, "%p", &test) != 1) {
        std::snprintf(error, size, "no machine in \"%s\"", settings);
        return nullptr;
    }
    const auto* const table = static_cast<const ZXServerLibrary*>(test);
    ZXServerConnection* const connection = table->open(settings, error, size);
    return connection == nullptr ? nullptr : new ZXServerConnection{table, connection};
}

std::int32_t read(ZXServerConnection* connection, char* to, std::size_t size, std::uint32_t at_most,
                  std::size_t* count) {
    return connection->test->read(connection->connection, to, size, at_most, count);
}

std::int32_t write(ZXServerConnection* connection, const char* bytes, std::size_t size, std::uint32_t at_most,
                   std::size_t* count) {
    return connection->test->write(connection->connection, bytes, size, at_most, count);
}

void shutdown(ZXServerConnection* connection) { connection->test->shutdown(connection->connection); }

void close(ZXServerConnection* connection) {
    connection->test->close(connection->connection);
    delete connection;
}

[[maybe_unused]] const ZXServerLibrary table = {
    FAKE_VERSION, sizeof(ZXServerLibrary), open, read, write, shutdown, close};
[[maybe_unused]] const ZXServerLibrary without_close = {
    FAKE_VERSION, sizeof(ZXServerLibrary), open, read, write, shutdown, nullptr};

}  // namespace

extern "C" ZX_SERVER_LIBRARY_EXPORT const ZXServerLibrary* FAKE_ENTRY(void);
extern "C" ZX_SERVER_LIBRARY_EXPORT const ZXServerLibrary* FAKE_ENTRY(void) { return FAKE_TABLE; }
