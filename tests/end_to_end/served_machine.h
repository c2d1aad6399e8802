// A machine of any description on a known port, and the configuration that leads a driver there or elsewhere.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "machine/descriptionreader.h"
#include "net/server.h"
#include "temporary_directory.h"

class ServedMachine {
public:
    ServedMachine(const zendrix::sim::MachineDescription& description, const std::string& settings)
        : m_settings(settings),
          m_server(description, {}, std::make_unique<zendrix::sim::LeapingClock>()),
          m_port(m_server.start()) {
        lead_to(m_port);
    }

    void lead_to(std::uint16_t port) {
        m_directory.file("m2zendrix.ini", "[connection]\nhost=127.0.0.1\nport=" + std::to_string(port) +
                                              "\n[Settings]\n" + m_settings);
    }

    const std::string name = "m2zendrix";
    std::string directory() const { return m_directory.path(); }
    std::uint16_t port() const { return m_port; }
    zendrix::sim::Server& server() { return m_server; }

private:
    TemporaryDirectory m_directory;
    std::string m_settings;
    zendrix::sim::Server m_server;
    std::uint16_t m_port;
};
