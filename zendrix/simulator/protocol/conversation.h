// One client's side of the protocol: request lines in, answer lines out (docs/protocol.md).
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "protocol/hub.h"
#include "protocol/transport.h"
#include "tokens.h"

namespace zendrix::sim {

class Conversation {
public:
    // What became of a request once its handler has returned.
    enum class Outcome {
        done,     // answered
        begun,    // a transaction that goes on if the machine moves for it
        sending,  // a transaction that go_on() ends
        waiting,  // will be ended by the hub
    };
    using Handler = Outcome (Conversation::*)(wire::TokenReader& arguments);

    // Joins the hub; both outlive the conversation.
    Conversation(Hub& hub, Transport& transport);
    ~Conversation();
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;

    void greet();
    void request(std::string_view line);
    void over_long_request(std::string_view begin);  // the first bytes of the line
    // Sends more of the blocks that are on their way; to be called when the client can take more again.
    void go_on();
    void send_watch();
    // The patience with a waiting `machine get` is over.
    void lock_timed_out(std::int64_t id);

    bool is_congested() const { return m_transport.is_congested(); }

    // From the hub.
    void event(const std::string& text);
    void warning(std::int64_t id, Warning warning);
    void point(std::int64_t id, std::size_t number, const std::vector<double>& values);
    void end(std::int64_t id, Error error);

    // Handlers, one per request; the table of requests.cpp names them.
    Outcome machine_name(wire::TokenReader& arguments);
    Outcome machine_revision(wire::TokenReader& arguments);
    Outcome machine_serial(wire::TokenReader& arguments);
    Outcome machine_get(wire::TokenReader& arguments);
    Outcome machine_release(wire::TokenReader& arguments);
    Outcome master(wire::TokenReader& arguments);
    Outcome ping(wire::TokenReader& arguments);
    Outcome commands(wire::TokenReader& arguments);
    Outcome components(wire::TokenReader& arguments);
    Outcome options(wire::TokenReader& arguments);
    Outcome capabilities(wire::TokenReader& arguments);
    Outcome init_list(wire::TokenReader& arguments);
    Outcome init_active(wire::TokenReader& arguments);
    Outcome get(wire::TokenReader& arguments);
    Outcome scanaxis(wire::TokenReader& arguments);
    Outcome moveaxis(wire::TokenReader& arguments);
    Outcome movezeroaxis(wire::TokenReader& arguments);
    Outcome movelimitaxis(wire::TokenReader& arguments);
    Outcome watch(wire::TokenReader& arguments);
    Outcome abort(wire::TokenReader& arguments);
    Outcome reset(wire::TokenReader& arguments);
    Outcome modulo(wire::TokenReader& arguments);
    Outcome movebase(wire::TokenReader& arguments);
    Outcome scanbase(wire::TokenReader& arguments);
    Outcome init(wire::TokenReader& arguments);
    Outcome set(wire::TokenReader& arguments);
    Outcome move(wire::TokenReader& arguments);
    Outcome movezero(wire::TokenReader& arguments);
    Outcome movepoly(wire::TokenReader& arguments);
    Outcome movecircle(wire::TokenReader& arguments);
    Outcome movecone(wire::TokenReader& arguments);
    Outcome movehome(wire::TokenReader& arguments);
    Outcome scan(wire::TokenReader& arguments);
    Outcome scanpoint(wire::TokenReader& arguments);
    Outcome scanpoly(wire::TokenReader& arguments);
    Outcome scancircle(wire::TokenReader& arguments);
    Outcome scancone(wire::TokenReader& arguments);
    Outcome scandata(wire::TokenReader& arguments);
    // conversation_keypad.cpp
    Outcome keypad_list(wire::TokenReader& arguments);
    Outcome keypad_active(wire::TokenReader& arguments);
    Outcome keypad_enable(wire::TokenReader& arguments);
    Outcome keypad_disable(wire::TokenReader& arguments);
    Outcome spin_list(wire::TokenReader& arguments);
    Outcome spin_active(wire::TokenReader& arguments);
    Outcome spin_enable(wire::TokenReader& arguments);
    Outcome spin_disable(wire::TokenReader& arguments);
    Outcome wobble_get(wire::TokenReader& arguments);
    Outcome wobble(wire::TokenReader& arguments);
    // conversation_probes.cpp
    Outcome probe_info(wire::TokenReader& arguments);
    Outcome probe_list(wire::TokenReader& arguments);
    Outcome probe_define(wire::TokenReader& arguments);
    Outcome probe_delete(wire::TokenReader& arguments);
    Outcome probe_load(wire::TokenReader& arguments);
    Outcome probe_change(wire::TokenReader& arguments);
    Outcome probe_unload(wire::TokenReader& arguments);
    Outcome probe_offset(wire::TokenReader& arguments);
    Outcome probesystem_list(wire::TokenReader& arguments);
    Outcome probesystem_records(wire::TokenReader& arguments);
    Outcome probesystem_info(wire::TokenReader& arguments);
    Outcome probesystem_type(wire::TokenReader& arguments);
    Outcome probesystem_define(wire::TokenReader& arguments);
    Outcome probesystem_delete(wire::TokenReader& arguments);
    Outcome probesystem_load(wire::TokenReader& arguments);
    Outcome probesystem_unload(wire::TokenReader& arguments);
    // conversation_control.cpp
    Outcome control(wire::TokenReader& arguments);
    // conversation_blocks.cpp
    Outcome send(wire::TokenReader& arguments);
    Outcome send_begin(wire::TokenReader& arguments);
    Outcome send_part(wire::TokenReader& arguments);
    Outcome receive(wire::TokenReader& arguments);

private:
    void answer(std::int64_t id, std::string_view rest);
    void carry_out(std::string_view rest);
    void meet_faults(std::string_view words);
    void error(std::int64_t id, Error error);
    void ready(std::int64_t id);

    // conversation_queries.cpp
    void texts(const std::vector<std::string>& texts);  // a data line each
    void yes_or_no(bool answer);

    // conversation_blocks.cpp
    struct GoingBlock {
        std::int64_t id;
        BlockStore::Content content;
        std::size_t done;  // bytes
        bool is_coded;     // in base64
    };
    void require_takeable(const std::string& name);
    void taken(const std::string& name);
    void send_block_line(GoingBlock& block);
    bool stop_sending(std::int64_t id);

    Machine& machine() { return m_hub.machine(); }

    Hub& m_hub;
    Transport& m_transport;
    bool m_is_master = false;
    std::int64_t m_id = 0;               // of the request that is being carried out
    std::set<std::int64_t> m_open;       // begun or waiting, and not yet ended
    std::vector<PlannedFault> m_faults;  // of the request that is being carried out
    std::int64_t m_watch_id = 0;
    std::vector<std::string> m_watched;
    std::deque<std::pair<std::int64_t, std::unique_ptr<ComingBlock>>> m_coming;  // by the id of its begin
    std::deque<GoingBlock> m_going;
};

}  // namespace zendrix::sim
