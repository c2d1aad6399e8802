// The requests that may still be answered, and what each answer means for whoever sent them.
//
// Callers add and abandon; the reading side reports what came. Any thread may call any operation.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "clientoptions.h"
#include "exchange.h"
#include "os/mutex.h"

namespace serverdll {

class RequestTable {
public:
    explicit RequestTable(const ClientOptions& options) : m_options(options) {}

    // From now on answers to this id reach the exchange, until it is done. On false the exchange says why.
    bool add(long id, Exchange& exchange);
    void add_heartbeat(long id);
    // The caller waits no longer: whatever still comes with this id is dropped. False if it is done already.
    bool abandon(long id, Exchange& exchange);

    void accepted(long id);
    // True if the line is a reply line of a transfer, for its receiver.
    bool data(long id, std::string_view body);
    // What to tell the callbacks, if anything. Errors and warnings of unknown ids are told: they came late.
    std::optional<Delivery> message(Delivery::Kind kind, long id, std::string_view text);
    // May this id's points be told?
    bool takes_points(long id);

    struct Ended {
        RequestKind kind = RequestKind::heartbeat;
        bool known = false;
        bool failed = false;
        bool completes = false;  // the complete callback is to be told
    };
    Ended ready(long id);

    // Ends all exchanges; further ones fail at once with the same text. Gives the scans that were under way.
    std::vector<long> lose(const std::string& cause);

private:
    struct Entry {
        long id = 0;
        RequestKind kind = RequestKind::query;
        Exchange* exchange = nullptr;
        bool accepted = false;
        bool abandoned = false;
    };

    Entry* find(long id) OS_REQUIRES(m_lock);
    static void finish(Exchange& exchange);

    const ClientOptions& m_options;
    os::Mutex m_lock;
    std::vector<Entry> m_entries OS_GUARDED_BY(m_lock);
    std::string m_lost OS_GUARDED_BY(m_lock);  // the cause, once lost
};

}  // namespace serverdll
