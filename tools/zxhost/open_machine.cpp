#include "open_machine.h"

#include "driver_call.h"
#include "exit_status.h"
#include "private_configuration.h"

namespace zxhost {
namespace {

std::string address_of(const Settings& settings) {
    if (!settings.host.empty()) return settings.host + ":" + std::to_string(settings.port);
    const std::string where = settings.config.empty() ? "the driver's default address" : settings.config;
    return where + " (configuration " + settings.name + ")";
}

}  // namespace

OpenMachine::OpenMachine(const Settings& settings)
    : m_settings(settings), m_address(address_of(settings)), m_plugin(settings.plugin) {
    m_plugin.set_trace_level(settings.trace);
    connect();
}

void OpenMachine::connect() {
    if (m_settings.host.empty()) {
        open(m_settings.name, m_settings.config);
        return;
    }
    // The driver reads its configuration in Open alone, so the directory needn't outlive it.
    const PrivateConfiguration configuration(m_settings.host, m_settings.port);
    open("m2zendrix", configuration.directory());
}

void OpenMachine::renew() {
    m_machine->Close();
    connect();
}

void OpenMachine::open(const std::string& name, const std::string& directory) {
    m_machine = m_plugin.new_machine(name, directory, m_channel, m_notifier);
    const bool is_open =
        driver_call("opening the machine", ExitStatus::NoConnection, [&] { return m_machine->Open(); });
    if (!is_open)
        throw HostError(ExitStatus::NoConnection, "no connection to a machine at " + m_address,
                        "is it switched on, and are --host and --port right? The error log has the reason");
}

OpenMachine::~OpenMachine() { m_machine->Close(); }

}  // namespace zxhost
