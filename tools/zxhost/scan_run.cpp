#include "scan_run.h"

#include <fmt/chrono.h>

#include <chrono>
#include <exception>

#include "exit_status.h"
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

std::string probe_text(MMachAbstract& machine) {
    std::string text;
    if (machine.HasProbesystems() && machine.IsProbesystemLoaded())
        text = machine.GetActiveProbesystemName() + " " + std::to_string(machine.GetActiveProbesystemIdNum());
    const int probe = machine.HasProbes() ? machine.GetActiveProbeNum() : 0;
    if (probe > 0)
        text +=
            (text.empty() ? "" : ", ") + fmt::format("probe {}, tip {}", probe, machine.GetActiveTipNum());
    return text.empty() ? "not named by the machine" : text;
}

void fill_scan_file(ScanWriter& file, const std::function<void()>& fill) {
    try {
        fill();
    } catch (const std::exception& error) {
        try {
            file.cut(error.what());
        } catch (const HostError&) {  // the first failure tells more; without a footer the file counts as cut
        }
        throw;
    }
    file.finish();
}

}  // namespace zxhost
