#include "m2zendrixprobeloadcommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::bare_once("m_pZendrixCom->ProbeLoad()")};
}

M2ZendrixProbeLoadCommand::M2ZendrixProbeLoadCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                     long probe, long tip)
    : M2ZendrixConcreteCommand(mach, output) {
    call_client_with_machine(report,
                             [&](CZendrixCOM& client) { return client.ProbeLoad(probe, tip, &m_commandId); });
}
