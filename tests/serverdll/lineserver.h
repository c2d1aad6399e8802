// A machine server for tests of the client: one connection, played by a script on a thread of its own.
#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <string>
#include <string_view>
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
    // The client's next request, heartbeats left out unless wanted.
    virtual Request next() = 0;
    // True when the client has closed; whatever it sends before is thrown away.
    virtual bool wait_for_close() = 0;
    virtual void close() = 0;
    virtual void reset() = 0;
    // Writes as much of the text as goes without waiting; gives the count.
    virtual std::size_t send_some(std::string_view bytes) = 0;

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

class Server {
public:
    virtual ~Server() = default;
    virtual std::string connection_string() const = 0;
    // Waits for the end of the script; what it threw fails the test.
    virtual void finish() = 0;
};

using Script = std::function<void(Peer&)>;

// What the suite of assumptions is run over.
struct Transport {
    std::string name;
    std::function<std::unique_ptr<Server>(Script)> serve;
};

// On TCP, at a free port of the loopback address.
std::unique_ptr<Server> serve_tcp(Script script);

}  // namespace test
