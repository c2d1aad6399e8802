// A simulated machine on a port of its own, and the configuration that leads a driver to it.
#pragma once

#include <memory>
#include <string>

#include "machine/descriptionreader.h"
#include "net/server.h"
#include "temporary_directory.h"

class SimulatedMachine {
public:
    enum class Pace { leaping, real };

    // `faults` as zendrix-sim takes them; further lines of the ini file as they stand.
    explicit SimulatedMachine(const std::vector<std::string>& faults = {}, Pace pace = Pace::leaping,
                              const std::string& settings = "") {
        zendrix::sim::ServerOptions options;
        for (const std::string& fault : faults) options.faults.add(fault);
        std::unique_ptr<zendrix::sim::Clock> clock;
        if (pace == Pace::leaping)
            clock = std::make_unique<zendrix::sim::LeapingClock>();
        else
            clock = std::make_unique<zendrix::sim::ScaledClock>(1.0);
        start(zendrix::sim::builtin_machine(), options, std::move(clock), settings);
    }

    SimulatedMachine(const zendrix::sim::MachineDescription& description,
                     std::unique_ptr<zendrix::sim::Clock> clock, const std::string& settings = "") {
        start(description, {}, std::move(clock), settings);
    }

    const std::string name = "m2zendrix";
    std::string directory() const { return m_directory.path(); }
    zendrix::sim::Server& server() { return *m_server; }

private:
    void start(const zendrix::sim::MachineDescription& description,
               const zendrix::sim::ServerOptions& options, std::unique_ptr<zendrix::sim::Clock> clock,
               const std::string& settings) {
        m_server = std::make_unique<zendrix::sim::Server>(description, options, std::move(clock));
        const std::string port = std::to_string(m_server->start());
        m_directory.file("m2zendrix.ini",
                         "[connection]\nhost=127.0.0.1\nport=" + port + "\n[Settings]\n" + settings);
    }

    TemporaryDirectory m_directory;
    std::unique_ptr<zendrix::sim::Server> m_server;
};
