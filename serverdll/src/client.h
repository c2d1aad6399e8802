// What stands behind CZendrixCOM: its threads and tables, and the two ways in which an operation runs.
#pragma once

#include <atomic>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "callgate.h"
#include "connection.h"
#include "czendrixcom.h"
#include "replies.h"

namespace serverdll {

inline constexpr const char* bad_argument = "invalid argument";
inline constexpr const char* bad_answer = "the server's answer isn't understood";

}  // namespace serverdll

#if defined(_WIN32)
#define SERVERDLL_LOCAL
#else
#define SERVERDLL_LOCAL __attribute__((visibility("hidden")))
#endif

class SERVERDLL_LOCAL CZendrixCOM::Client {
public:
    using Progress = void (*)(void* user, const char* text);

    Client(Progress progress, void* user, const char* server);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    // A request with a new id.
    wire::RequestWriter request(std::string_view words) const;

    // Sends, and waits for the end of an answer without data.
    bool query(wire::RequestWriter& request);
    // Sends, and waits for the acceptance or, in mode ZX_SYNC, for the end.
    bool transaction(wire::RequestWriter& request, long* tid,
                     serverdll::RequestKind kind = serverdll::RequestKind::transaction);
    // A query whose answers to come are `watch` lines about that many axes; none: their end.
    bool watch(wire::RequestWriter& request, std::size_t axes);

    // A block of data: in one request, or in parts if it is long.
    bool send_block(std::string_view name, std::string_view data);

    // The same in the shapes that most operations have. Outputs are written on success only.
    bool ask(std::string_view words);
    bool ask(std::string_view words, const std::vector<std::string>& axes);
    std::string ask_text(std::string_view words);
    std::map<std::string, std::string> ask_versions(std::string_view words);
    bool ask_names(std::string_view words, std::vector<std::string>& names);
    bool query_names(wire::RequestWriter& line, std::vector<std::string>& names);
    bool query_numbers(wire::RequestWriter& line, double* values, std::size_t count);
    bool begin(std::string_view words, long* tid);
    bool begin(std::string_view words, std::initializer_list<double> numbers, std::size_t count,
               const Position* positions, long* tid,
               serverdll::RequestKind kind = serverdll::RequestKind::transaction);

    // `read_line` takes each data line; false from it is a failure of the query.
    template <typename ReadLine>
    bool query_lines(wire::RequestWriter& line, ReadLine&& read_line) {
        const serverdll::GatePass pass(m_gate);
        std::string data;
        if (!query_inside(line, &data)) return false;
        return serverdll::each_line(data, read_line) || refuse_inside(serverdll::bad_answer);
    }

    // The answer is exactly one data line.
    template <typename ReadLine>
    bool query_line(wire::RequestWriter& line, ReadLine&& read_line) {
        const serverdll::GatePass pass(m_gate);
        std::string data;
        if (!query_inside(line, &data)) return false;
        const bool one = data.find('\n') + 1 == data.size() && !data.empty();
        return (one && serverdll::each_line(data, read_line)) || refuse_inside(serverdll::bad_answer);
    }

    // A failure that the client itself found: tells the error callback, then reports it.
    bool refuse(const char* text);

    bool is_alive() const noexcept { return m_connection != nullptr && m_connection->is_alive(); }

    std::atomic<bool> throws = false;
    std::atomic<SyncType> mode = ZX_ASYNC;
    std::atomic<long> latency = -1;
    wire::Hello hello;
    serverdll::ReplyStore replies;
    serverdll::Callbacks callbacks;

private:
    void connect(Progress progress, void* user, const std::string& server);
    // The same for callers who are inside already. `data` gets the bodies of the data lines, each ended by
    // LF.
    bool query_inside(wire::RequestWriter& request, std::string* data);
    bool refuse_inside(const char* text);
    bool send_parts(std::string_view name, std::string_view data, std::size_t part);
    void run(wire::RequestWriter& request, serverdll::Exchange& exchange);
    void perform(wire::RequestWriter& request, serverdll::Exchange& exchange);
    void tell(long id, serverdll::Exchange& exchange);
    bool report(const serverdll::Exchange& exchange) const;

    const serverdll::ClientOptions m_options;
    std::string m_noConnection;  // why there never was one
    serverdll::Dispatcher m_dispatcher;
    serverdll::CallGate m_gate;
    std::unique_ptr<serverdll::Connection> m_connection;
};
