// A machine server for tests of the client: one connection, played by a script on a thread of its own.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace test {

struct Request {
    std::string id;     // as it came
    std::string words;  // everything behind the tab
};

// The server's end of the connection, as a script sees it. All waits end after ten seconds with an exception
// that fails the test.
class Peer {
public:
    virtual ~Peer() = default;

    // Writes bytes as they are.
    virtual void send(std::string_view bytes) = 0;
    // The next line; nothing when the client has closed.
    virtual std::optional<std::string> read_line() = 0;
    virtual void close() = 0;
    // As close() on a road that knows no such thing.
    virtual void reset() = 0;
    // Writes as much of the text as goes without waiting; gives the count.
    virtual std::size_t send_some(std::string_view bytes) = 0;

    // The client's next request, heartbeats left out unless wanted.
    Request next();
    // True when the client has closed; whatever it sends before is thrown away.
    bool wait_for_close();

    bool answers_ping = true;
    bool tells_ping = false;

    void line(const std::string& text) { send(text + "\r\n"); }
    void hello(const std::string& revision = "2.2") {
        line("0000\thello \"Fake\" " + revision + " simulated");
    }
    // Lines with the request's id in front.
    void answer(const Request& request, const std::vector<std::string>& rests);
    // Waits for this request and answers it.
    Request expect(const std::string& words, const std::vector<std::string>& rests = {});
    // Answers requests by a table until the client closes; what isn't in the table is refused.
    void serve(const std::map<std::string, std::vector<std::string>>& table);
};

using Script = std::function<void(Peer&)>;

class Server {
public:
    explicit Server(Script script) : m_script(std::move(script)) {}
    // A subclass calls finish().
    virtual ~Server() = default;

    virtual std::string connection_string() const = 0;

    // What a client says of a connection that the server closed, or reset.
    virtual std::string cause_of_close() const { return "closed by the server"; }
    virtual std::string cause_of_reset() const { return "reset by the server"; }

    // Waits for the end of the script; what it threw fails the test.
    void finish();

protected:
    // Plays the script on a thread of its own, with the client that `accept` waits for.
    void start(std::function<std::unique_ptr<Peer>()> accept);

    static constexpr std::chrono::seconds bound{10};

private:
    void run(const std::function<std::unique_ptr<Peer>()>& accept);

    Script m_script;
    std::thread m_thread;
    std::string m_failure;
};

// What the suite of assumptions is run over.
struct Transport {
    std::string name;
    std::function<std::unique_ptr<Server>(Script)> serve;
    bool greets = true;  // the hello comes by itself and first, so whatever else comes first is wrong
    bool keeps = true;   // what was sent before a close still comes; a plug that is pulled takes it along
};

// On TCP, at a free port of the loopback address.
std::unique_ptr<Server> serve_tcp(Script script);
// In this process, behind a library that the client loads.
std::unique_ptr<Server> serve_library(Script script);
// At the other end of a serial line, a pseudo-terminal. POSIX.
std::unique_ptr<Server> serve_serial(Script script);

// Those that not every system can test.
std::vector<Transport> transports_of_the_system();

std::vector<Transport> all_transports();

inline void PrintTo(const Transport& transport, std::ostream* out) { *out << transport.name; }

}  // namespace test
