// zendrix-sim: the simulated machine as a program.
#include <CLI/CLI.hpp>
#include <atomic>
#include <csignal>
#include <iostream>
#include <memory>
#include <string>

#include "machine/descriptionreader.h"
#include "net/server.h"
#include "numbers.h"

namespace {

using namespace zendrix::sim;

std::atomic<bool> stop_asked = false;  // lock-free, so a signal may set it

struct Wishes {
    std::string machine;
    std::string speed = "1";
    std::string revision = "3.0";
    std::vector<std::string> faults;
    std::int64_t seed = -1;
    std::int64_t capabilities_every = 0;
    bool log = false;
    ServerOptions server;
};

const char* const examples = R"(Examples:
  zendrix-sim
      the built-in machine for round parts, on a free port of this computer
  zendrix-sim --port 7073 --machine machines/rich.ini --speed 10
      another machine, ten times as fast as real
  zendrix-sim --speed max --fault reset@point:1000
      as fast as the processor; resets the connection at the thousandth point

The first line on standard output is "listening on ADDRESS:PORT". Ends on SIGINT and SIGTERM, the machine
first. Exit status: 0 after a clean end, 1 if it cannot listen, 2 for wrong usage or a wrong machine file.)";

void declare(CLI::App& app, Wishes& wishes) {
    app.footer(examples);
    app.add_option("--machine", wishes.machine, "Machine file (default: built in, as machines/round4.ini)");
    app.add_option("--port", wishes.server.port, "TCP port; 0 takes any that is free")->capture_default_str();
    app.add_option("--bind", wishes.server.address, "Address to listen on")->capture_default_str();
    app.add_option("--speed", wishes.speed, "Machine time against real time, or max")->capture_default_str();
    app.add_option("--seed", wishes.seed, "Seed of the probing noise (default: the machine's)")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--fault", wishes.faults,
                   "NAME[=VALUE]@PLACE:N[+EVERY], as in close@request:5; repeatable")
        ->allow_extra_args(false);
    app.add_option("--capabilities-change-every", wishes.capabilities_every,
                   "Send the event \"capabilities changed\" every so many ms")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--revision", wishes.revision, "Protocol revision to announce")->capture_default_str();
    app.add_flag("--once", wishes.server.once, "End after the first client has gone");
    app.add_flag("--log", wishes.log, "Tell on standard error which clients come and go");
}

std::unique_ptr<Clock> make_clock(const std::string& speed) {
    if (speed == "max") return std::make_unique<LeapingClock>();
    double factor = 0.0;
    if (!wire::parse_number(speed, factor) || !(factor >= 0.001 && factor <= 1000000.0)) {
        throw std::invalid_argument("--speed: \"" + speed + "\" is neither max nor a factor from 0.001 on");
    }
    return std::make_unique<ScaledClock>(factor);
}

Revision parse_revision(const std::string& text) {
    const std::size_t point = text.find('.');
    std::int64_t major = 0;
    std::int64_t minor = 0;
    const bool is_good = point != std::string::npos &&
                         wire::parse_integer(text.substr(0, point), 0, 1000000, major) &&
                         wire::parse_integer(text.substr(point + 1), 0, 1000000, minor);
    if (!is_good) throw std::invalid_argument("--revision: \"" + text + "\" is not of the form MAJOR.MINOR");
    return {static_cast<int>(major), static_cast<int>(minor)};
}

std::unique_ptr<Server> make_server(Wishes& wishes) {
    MachineDescription machine = wishes.machine.empty() ? builtin_machine() : read_machine(wishes.machine);
    if (wishes.seed >= 0) machine.seed = static_cast<std::uint64_t>(wishes.seed);
    wishes.server.revision = parse_revision(wishes.revision);
    for (const std::string& fault : wishes.faults) wishes.server.faults.add(fault);
    wishes.server.capabilities_change_every = std::chrono::milliseconds(wishes.capabilities_every);
    if (wishes.log) wishes.server.log = [](const std::string& text) { std::cerr << text << std::endl; };
    return std::make_unique<Server>(std::move(machine), wishes.server, make_clock(wishes.speed));
}

int serve(Server& server, const std::string& address) {
    std::uint16_t port = 0;
    try {
        port = server.start();
    } catch (const std::exception& error) {
        std::cerr << "zendrix-sim: " << error.what() << "; choose another --port or --bind\n";
        return 1;
    }
    std::cout << "listening on " << address << ':' << port << std::endl;
    server.wait([] { return stop_asked.load(); });
    server.stop();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Wishes wishes;
    CLI::App app("A simulated machine server.", "zendrix-sim");
    declare(app, wishes);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    std::unique_ptr<Server> server;
    try {
        server = make_server(wishes);
    } catch (const std::exception& error) {
        std::cerr << "zendrix-sim: " << error.what() << '\n';
        return 2;
    }
    std::signal(SIGINT, [](int) { stop_asked = true; });
    std::signal(SIGTERM, [](int) { stop_asked = true; });
    return serve(*server, wishes.server.address);
}
