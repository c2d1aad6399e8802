// The machine server: a simulated machine that clients reach over TCP, a serial line, or in its own process.
//
// The server runs on one thread of its own, between start() and stop(). Construct, start and stop it on one
// thread; with `invoke` any thread may look at the machine while it runs.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "faults/faultplan.h"
#include "machine/clock.h"
#include "machine/description.h"
#include "net/memorylink.h"
#include "protocol/hub.h"

namespace zendrix::sim {

// Where clients come from. Those inside the process always may.
enum class Road {
    tcp,
    serial,    // the line `device`
    terminal,  // the other end of a pseudo-terminal, which is made for it
    none
};

struct ServerOptions {
    Road road = Road::tcp;
    std::string device;  // of the serial line, as "COM3" or "/dev/ttyUSB0"
    unsigned baud = 115200;
    std::string address = "127.0.0.1";
    std::uint16_t port = 0;  // 0: any that is free
    Revision revision;       // of the protocol, as the hello tells
    FaultPlan faults;
    std::chrono::milliseconds capabilities_change_every{0};  // the event, to every master; 0: never
    bool once = false;                                       // ends after the first connection has gone
    std::function<void(const std::string&)> log;             // lines about clients; on the server's thread
};

class Server {
public:
    Server(MachineDescription description, ServerOptions options, std::unique_ptr<Clock> clock);
    ~Server();  // stops
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Serves from now on; the port, 0 without one. Throws std::runtime_error if the road can't be had.
    std::uint16_t start();

    // What a client names to come here: "127.0.0.1:7073", or the device of the line. After start().
    std::string place() const;

    // A connection inside the process. Any thread, between start() and stop().
    std::shared_ptr<MemoryLink> connect();

    // The machine stops first, then what was said goes out, then the clients are sent away. Bounded.
    void stop();

    // Waits until the server has ended by itself (`once`) or `cancelled` says so, which it asks now and then.
    void wait(const std::function<bool()>& cancelled);

    // Runs `action` on the server's thread, between two steps of the machine, and waits for it. The machine
    // then goes on at its clock's time.
    void invoke(const std::function<void(Hub& hub, Clock& clock)>& action);

private:
    class Core;
    std::unique_ptr<Core> m_core;
};

}  // namespace zendrix::sim
