// One request and what became of it, as the caller who waits sees it.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "clientoptions.h"
#include "delivery.h"

namespace serverdll {

enum class RequestKind {
    query,        // data, then its end
    transaction,  // accepted now, its end later
    scan,         // likewise, with points
    receive,      // likewise, with reply lines
    heartbeat     // nobody waits
};

// The reading side writes everything before it sets `done`; the caller looks at it afterwards.
// The two times are the caller's own.
struct Exchange {
    RequestKind kind = RequestKind::query;
    bool until_end = true;         // a transaction: done at its end, not when it is accepted
    bool tells_by_itself = false;  // the caller runs the callbacks for `messages` on its own thread

    std::atomic<bool> accepted = false;  // may be seen before `done`
    std::atomic<bool> done = false;
    bool failed = false;
    bool told = false;       // the error callback has been given the text
    bool lost = false;       // there is no connection (any more)
    std::string error = {};  // of a failed one: the first text
    std::string data = {};   // bodies of the data lines, each ended by LF
    std::vector<Delivery> messages = {};
    Clock::time_point began = {};  // before the request left
    Clock::time_point ended = {};  // when the caller stopped waiting
};

}  // namespace serverdll
