#include "client.h"

#include "clientlog.h"
#include "handshake.h"
#include "idsource.h"

using serverdll::Delivery;
using serverdll::Exchange;
using serverdll::RequestKind;

namespace {

void store_id(long* tid, long id) {
    if (tid != nullptr) std::atomic_ref<long>(*tid).store(id, std::memory_order_release);
}

std::string describe(const wire::Hello& hello) {
    return "machine \"" + hello.name + "\", protocol revision " + std::to_string(hello.major) + "." +
           std::to_string(hello.minor) + (hello.simulated ? ", simulated" : "");
}

}  // namespace

CZendrixCOM::Client::Client(Progress progress, void* user, const char* server)
    : replies(serverdll::client_options().block_bytes),
      callbacks([this](long id) {
          replies.completed(id);
          serverdll::process_ids().release(id);
      }),
      m_options(serverdll::client_options()),
      m_dispatcher(callbacks) {
    connect(progress, user, server == nullptr ? "" : server);
    if (m_connection == nullptr) return;
    m_dispatcher.start();
    m_connection->start();
}

// Those who wait fail first, then the threads end; nobody is inside when the parts go.
CZendrixCOM::Client::~Client() {
    if (m_connection != nullptr) m_connection->end();
    m_dispatcher.stop();
    m_gate.wait_until_empty();
    if (m_connection != nullptr) m_connection->join();
    m_dispatcher.join();
    serverdll::process_ids().release_all(this);
}

void CZendrixCOM::Client::connect(Progress progress, void* user, const std::string& server) {
    const auto say = [&](const std::string& text) {
        if (progress != nullptr) progress(user, text.c_str());
    };
    say("connecting to \"" + server + "\"");
    std::unique_ptr<serverdll::Transport> transport = serverdll::connect_transport(server, m_options);
    say("connected, waiting for the hello");
    wire::LineSplitter splitter(m_options.line);
    m_noConnection = serverdll::read_hello(*transport, splitter, m_options, hello);
    if (m_noConnection.empty()) {
        say(describe(hello));
        m_connection = std::make_unique<serverdll::Connection>(std::move(transport), std::move(splitter),
                                                               m_dispatcher, replies, m_options);
        return;
    }
    m_noConnection = "no machine connection to \"" + server + "\": " + m_noConnection;
    serverdll::log_error("client.cpp", __LINE__, m_noConnection);
    say(m_noConnection);
}

wire::RequestWriter CZendrixCOM::Client::request(std::string_view words) const {
    return {serverdll::process_ids().next(), words};
}

bool CZendrixCOM::Client::query(wire::RequestWriter& request) {
    const serverdll::GatePass pass(m_gate);
    return query_inside(request, nullptr);
}

bool CZendrixCOM::Client::query_inside(wire::RequestWriter& request, std::string* data) {
    Exchange exchange;
    run(request, exchange);
    if (!exchange.failed && data != nullptr) *data = std::move(exchange.data);
    return report(exchange);
}

bool CZendrixCOM::Client::transaction(wire::RequestWriter& request, long* tid, RequestKind kind) {
    const serverdll::GatePass pass(m_gate);
    const long id = static_cast<long>(request.id());
    Exchange exchange;
    exchange.kind = kind;
    exchange.until_end = mode.load(std::memory_order_relaxed) == ZX_SYNC;
    store_id(tid, id);
    serverdll::process_ids().hold(id, this);
    if (kind == RequestKind::receive) replies.open(id);
    run(request, exchange);
    if (!exchange.accepted.load(std::memory_order_relaxed)) {
        store_id(tid, 0);
        replies.drop(id);
        // An answer that never came may still come.
        if (exchange.done.load(std::memory_order_relaxed)) serverdll::process_ids().release(id);
    }
    return report(exchange);
}

bool CZendrixCOM::Client::watch(wire::RequestWriter& request, std::size_t axes) {
    if (m_connection != nullptr) m_connection->ask_watch(static_cast<long>(request.id()), axes);
    return query(request);
}

bool CZendrixCOM::Client::refuse(const char* text) {
    const serverdll::GatePass pass(m_gate);
    return refuse_inside(text);
}

bool CZendrixCOM::Client::refuse_inside(const char* text) {
    Exchange exchange;
    exchange.failed = true;
    exchange.error = text;
    exchange.lost = !is_alive();
    if (!exchange.lost) tell(0, exchange);
    return report(exchange);
}

void CZendrixCOM::Client::run(wire::RequestWriter& request, Exchange& exchange) {
    if (m_connection == nullptr) {
        exchange.failed = true;
        exchange.lost = true;
        exchange.error = m_noConnection;
        return;
    }
    exchange.tells_by_itself = m_dispatcher.is_this_thread();
    if (request.length() <= m_options.line) {
        perform(request, exchange);
    } else {
        exchange.failed = true;
        exchange.error = "the request is too long";
    }
    tell(exchange.kind == RequestKind::query ? 0 : static_cast<long>(request.id()), exchange);
}

void CZendrixCOM::Client::perform(wire::RequestWriter& request, Exchange& exchange) {
    m_connection->perform(request, exchange);
    if (exchange.failed) return;
    const auto trip = std::chrono::duration_cast<std::chrono::microseconds>(exchange.ended - exchange.began);
    latency.store(static_cast<long>(trip.count()), std::memory_order_relaxed);
}

// The error callback has run when this returns, unless it takes too long.
void CZendrixCOM::Client::tell(long id, Exchange& exchange) {
    if (exchange.failed && !exchange.told && !exchange.lost) {
        exchange.messages.push_back({Delivery::Kind::error, id, 0, 0, exchange.error, {}});
    }
    if (m_dispatcher.is_this_thread()) {
        for (Delivery& message : exchange.messages) callbacks.deliver(message);
        return;
    }
    for (Delivery& message : exchange.messages) m_dispatcher.push(std::move(message));
    if (exchange.failed && !exchange.lost) m_dispatcher.wait_for_queued(m_options.error_callback);
}

bool CZendrixCOM::Client::report(const Exchange& exchange) const {
    if (!exchange.failed) return true;
    if (throws.load(std::memory_order_relaxed)) throw CZendrixError(exchange.error);
    return false;
}
