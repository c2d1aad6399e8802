// Which requests there are.
#pragma once

#include <span>
#include <string_view>

#include "protocol/conversation.h"

namespace zendrix::sim {

struct Request {
    enum class Kind {
        query,        // looks only
        action,       // changes something, so the lock counts; answered at once
        transaction,  // the same, but accepted first
    };

    std::string_view words;  // one or two
    Kind kind;
    Conversation::Handler run;
    bool (*is_offered)(const Machine& machine);  // does this machine have what it takes?
};

std::span<const Request> requests();

// Does this machine, as it is now, take this request?
bool is_known(const Request& request, const Machine& machine);
// By its words; null if there is none.
const Request* request_of(std::string_view words);

// The request that a line begins with; takes its words. Throws if this machine has no such request.
const Request& find_request(wire::TokenReader& line, const Machine& machine);

}  // namespace zendrix::sim
