#include "m2zendrixprobedeletecommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::bare_once("m_pZendrixCom->ProbeDelete()")};
}

M2ZendrixProbeDeleteCommand::M2ZendrixProbeDeleteCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                         long probe, long tip)
    : M2ZendrixConcreteCommand(mach, output) {
    call_client(report, [&](CZendrixCOM& client) { return client.ProbeDelete(probe, tip); });
}
