#include "m2zendrixprobesystemdeletecommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(20),
                                     call_report::bare_once("m_pZendrixCom->Get()")};
}

M2ZendrixProbesystemDeleteCommand::M2ZendrixProbesystemDeleteCommand(M2ZendrixMachAbstract* mach,
                                                                     MOutputChannel* output,
                                                                     const std::string& name, long id)
    : M2ZendrixConcreteCommand(mach, output) {
    call_client(report, [&](CZendrixCOM& client) { return client.ProbesystemDelete(name.c_str(), id); });
}
