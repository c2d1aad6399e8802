#include "m2zendrixresetcommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::number(16, "M2ZendrixResetCommand(): Reset() failed"),
                                     call_report::always("m_pZendrixCom->Reset()")};
}

M2ZendrixResetCommand::M2ZendrixResetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output)
    : M2ZendrixConcreteCommand(mach, output) {
    call_client_with_machine(report, [&](CZendrixCOM& client) { return client.Reset(); });
}
