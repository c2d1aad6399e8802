// zendrix-sim: the simulated machine as a program.
#include <CLI/CLI.hpp>
#include <atomic>
#include <iostream>
#include <memory>
#include <string>

#include "net/server.h"
#include "os/interrupt.h"
#include "os/streams.h"
#include "settings.h"

namespace {

using namespace zendrix::sim;

std::atomic<bool> stop_asked = false;  // lock-free, so an interrupt may set it

struct Wishes {
    Settings settings;
    bool wants_terminal = false;
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
  zendrix-sim --serial /dev/ttyUSB0 --baud 57600
      at a serial line; the client's connection string is its own end of it, as "COM3,57600"
  zendrix-sim --serial-terminal
      at a serial line in software, whose other end it names, as "COM:/dev/pts/5"

The first line on standard output is "listening on ADDRESS:PORT" or "listening on DEVICE". Ends on SIGINT and SIGTERM, the machine
first. Exit status: 0 after a clean end, 1 if it cannot listen, 2 for wrong usage or a wrong machine file.)";

void declare(CLI::App& app, Wishes& wishes) {
    app.footer(examples);
    auto* const port = app.add_option("--port", wishes.server.port, "TCP port; 0 takes any that is free");
    auto* const bind = app.add_option("--bind", wishes.server.address, "Address to listen on");
    auto* const serial = app.add_option("--serial", wishes.server.device,
                                        "Serve a serial line instead, as COM1 or /dev/ttyUSB0");
    auto* const terminal = app.add_flag("--serial-terminal", wishes.wants_terminal,
                                        "Serve a serial line in software instead, made for it");
    for (CLI::Option* const line : {serial, terminal}) line->excludes(port)->excludes(bind);
    serial->excludes(terminal);
    app.add_option("--baud", wishes.server.baud, "Speed of the serial line")
        ->check(CLI::PositiveNumber)
        ->needs(serial);
    for (CLI::Option* const option : {port, bind}) option->capture_default_str();
    declare_settings(app, wishes.settings);
    app.add_flag("--once", wishes.server.once, "End after the first connection has gone");
    app.add_flag("--log", wishes.log, "Tell on standard error which clients come and go");
}

// How to serve, from the options that only the program has.
void choose_road(Wishes& wishes) {
    if (wishes.wants_terminal) wishes.server.road = Road::terminal;
    if (!wishes.server.device.empty()) wishes.server.road = Road::serial;
    if (wishes.log) wishes.server.log = [](const std::string& text) { std::cerr << text << std::endl; };
}

int serve(Server& server, Road road) {
    try {
        server.start();
    } catch (const std::exception& error) {
        std::cerr << "zendrix-sim: " << error.what()
                  << (road == Road::tcp ? "; choose another --port or --bind\n" : "\n");
        return 1;
    }
    std::cout << "listening on " << server.place() << std::endl;
    server.wait([] { return stop_asked.load(); });
    server.stop();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    os::make_standard_streams_binary();
    Wishes wishes;
    CLI::App app("A simulated machine server.", "zendrix-sim");
    app.allow_windows_style_options(false);  // a word that begins with a slash is the same on every system
    declare(app, wishes);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    std::unique_ptr<Server> server;
    try {
        choose_road(wishes);
        server = make_server(wishes.settings, wishes.server);
    } catch (const std::exception& error) {
        std::cerr << "zendrix-sim: " << error.what() << '\n';
        return 2;
    }
    for (const auto set_handler : {os::set_interrupt_handler, os::set_end_handler})
        set_handler([] { stop_asked = true; });
    return serve(*server, wishes.server.road);
}
