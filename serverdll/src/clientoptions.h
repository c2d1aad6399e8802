// The bounds that a client keeps, in time and in memory.
#pragma once

#include <chrono>
#include <cstddef>

#include "linesplitter.h"

namespace serverdll {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct ClientOptions {
    milliseconds connect{3000};
    milliseconds hello{2000};            // from the accepted connection to the server's first line
    milliseconds answer{10000};          // to a query, or to the acceptance of a transaction
    milliseconds transaction{86400000};  // to the end of a transaction that somebody waits for
    milliseconds heartbeat{5000};        // a server that says nothing for this long is lost
    milliseconds write{5000};
    milliseconds error_callback{1000};  // how long a failed call waits for the error callback to have run

    // After a caller has read its answer by itself the reader thread leaves the socket alone for this long,
    // so that a series of queries never wakes it.
    std::chrono::microseconds reader_grace{1000};

    std::size_t line = wire::max_line;
    std::size_t open_requests = 256;
    std::size_t answer_bytes = std::size_t{64} << 20;
    std::size_t block_bytes = std::size_t{256} << 20;  // of all reply lines not yet taken
    // What waits for callbacks. Over the first bound the reader thread stops reading, so the server feels the
    // pressure; a caller that waits for an answer reads on, up to the second bound, where the connection
    // ends.
    std::size_t queue_pause = std::size_t{4} << 20;
    std::size_t queue_limit = std::size_t{64} << 20;
};

// What new clients of this process take over. Change it only while no client is being made.
ClientOptions& client_options();

}  // namespace serverdll
