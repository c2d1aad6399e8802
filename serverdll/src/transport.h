// The road of bytes to a machine server. One thread reads at a time and one writes at a time, both may do so
// at once; shutdown() may be called on any thread.
#pragma once

#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "clientoptions.h"

namespace serverdll {

enum class ReadStatus { bytes, timed_out, ended };

struct ReadResult {
    ReadStatus status = ReadStatus::timed_out;
    std::size_t count = 0;
    const char* cause = "";  // of ended: "closed by the server" and the like
};

class Transport {
public:
    virtual ~Transport() = default;

    // Waits for bytes and takes what is there; may give up before its time.
    virtual ReadResult read(std::span<char> to, milliseconds at_most) = 0;
    // Everything has left, or the cause why not; null is success.
    virtual const char* write(std::string_view bytes, milliseconds at_most) = 0;
    // Ends reading and writing, now and from now on.
    virtual void shutdown() noexcept = 0;

    // How many bytes of a block go into one request: whoever else wants to say something waits that long.
    virtual std::size_t block_part() const { return std::size_t{256} << 10; }

    // On a road that is always there: what a client says to get a hello. Whatever comes before the hello then
    // was meant for somebody else. Empty: a connection is new, and the server begins.
    virtual std::string_view opening() const { return {}; }
};

// Where the connection string `server` leads: with ".dll" to a library, with "COM" to a serial line, else to
// a TCP port. Throws CZendrixError with the cause if nobody answers there.
std::unique_ptr<Transport> connect_transport(const std::string& server, const ClientOptions& options);

// "host port"
std::unique_ptr<Transport> connect_tcp(const std::string& server, const ClientOptions& options);
// "LIBRARY" or "LIBRARY SETTINGS"
std::unique_ptr<Transport> connect_library(const std::string& server);
// "LINE" or "LINE,BAUD"
std::unique_ptr<Transport> connect_serial(const std::string& server);

// Throws what connecting throws.
[[noreturn]] void refuse_connection(const std::string& server, const std::string& cause);

}  // namespace serverdll
