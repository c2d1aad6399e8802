#include "m2zendrixscandatacommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16, "M2ZendrixScanCommand(): Scan() failed"),
                                     call_report::once("m_pZendrixCom->Scan()")};
}

M2ZendrixScandataCommand::M2ZendrixScandataCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                   const std::vector<std::string>& names)
    : M2ZendrixConcreteCommand(mach, output, names) {
    std::vector<std::string> wanted = m_names;
    call_client_with_machine(report,
                             [&](CZendrixCOM& client) { return client.ScanData(wanted, &m_commandId); });
}
