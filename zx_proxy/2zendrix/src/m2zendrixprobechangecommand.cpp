#include "m2zendrixprobechangecommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::bare_once("m_pZendrixCom->ProbeChange()")};
}

M2ZendrixProbeChangeCommand::M2ZendrixProbeChangeCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                         long probe, long tip)
    : M2ZendrixConcreteCommand(mach, output) {
    call_client_with_machine(
        report, [&](CZendrixCOM& client) { return client.ProbeChange(probe, tip, &m_commandId); });
}
