#include "m2zendrixprobesystemunloadcommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(22),
                                     call_report::bare_once("m_pZendrixCom->Get()")};
}

M2ZendrixProbesystemUnloadCommand::M2ZendrixProbesystemUnloadCommand(M2ZendrixMachAbstract* mach,
                                                                     MOutputChannel* output)
    : M2ZendrixConcreteCommand(mach, output) {
    std::vector<std::string> no_arguments;
    call_client(report, [&](CZendrixCOM& client) {
        return client.Execute("probesystem unload", no_arguments, &m_commandId);
    });
}
