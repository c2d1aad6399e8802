#include "scan_run.h"

#include <fmt/chrono.h>

#include <chrono>

#include "mmachabstract.h"

namespace zxhost {

void select_scan_data(VerbHost& host, const std::vector<std::string>& names) {
    host.run({.name = "scandata",
              .class_name = MMachScandataCommand::ClassName(),
              .make = [&](MOutputChannel* channel) {
                  return host.machine().NewMMachScandataCommand(channel, names);
              }});
}

std::string time_text() {
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", fmt::gmtime(now));
}

std::string machine_text(MMachAbstract& machine) {
    return std::string(machine.GetMachineName()) + ", revision " + machine.GetMachineRevision() +
           ", serial " + machine.GetSerialNumber();
}

}  // namespace zxhost
