#include "m2zendrixprobeunloadcommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::bare_once("m_pZendrixCom->ProbeUnload()")};
}

M2ZendrixProbeUnloadCommand::M2ZendrixProbeUnloadCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output)
    : M2ZendrixConcreteCommand(mach, output) {
    call_client_with_machine(report, [&](CZendrixCOM& client) { return client.ProbeUnload(&m_commandId); });
}
