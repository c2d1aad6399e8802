// From the configuration to a machine that answers, rung by rung, up to the first that breaks. Nothing moves.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "clientoptions.h"
#include "config_report.h"
#include "line_talk.h"
#include "os/registry.h"
#include "round_trips.h"
#include "serverline.h"

namespace zxhost {

// Which machine, and who says so.
struct Target {
    std::string host;  // name or address, a library with ".dll", or a serial line with "COM"
    std::string port;  // counts for a name or address
    const ConfigReport* config = nullptr;  // null: no configuration was named
};

enum class RungState { holds, remark, broken };

// What kind of thing is broken, for the exit status.
enum class RungKind { configuration, connection, machine };

struct RungResult {
    RungState state = RungState::holds;
    std::string text;
    std::string advice;  // one sentence, for a remark or a broken rung
};

struct Rung {
    std::string name;
    RungKind kind = RungKind::machine;
    RungResult result;
    std::chrono::microseconds took{0};
};

class Ladder {
public:
    // The registry outlives the ladder.
    explicit Ladder(Target target, os::Registry& registry = os::system_registry(),
                    serverdll::ClientOptions options = serverdll::client_options());

    // Calls `tell` with each rung. True if all hold.
    bool climb(const std::function<void(const Rung&)>& tell);

    // Of the last rung, if it was reached.
    const std::vector<Microseconds>& round_trips() const { return m_trips.sorted; }

    // "127.0.0.1 7073", "sim.dll": what the driver would hand to its client.
    std::string connection_string() const;

private:
    RungResult configuration();
    RungResult keys();
    RungResult address();
    RungResult connect();
    RungResult hello();
    RungResult revision();
    RungResult commands();
    RungResult lock();
    RungResult adapter();
    RungResult round_trip();

    bool is_named() const;
    RungResult no_answer(const std::string& request, const Answer& answer) const;

    Target m_target;
    os::Registry& m_registry;
    serverdll::ClientOptions m_options;
    std::string m_address;  // the first that the host's name stands for
    std::unique_ptr<serverdll::Transport> m_transport;
    wire::LineSplitter m_splitter;
    wire::Hello m_hello;
    std::string m_helloFault;
    std::unique_ptr<LineTalk> m_talk;
    RoundTrips m_trips;
};

}  // namespace zxhost
