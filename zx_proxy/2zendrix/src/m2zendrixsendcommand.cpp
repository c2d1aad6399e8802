#include "m2zendrixsendcommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16), call_report::once("m_pZendrixCom->Send()")};
}

M2ZendrixSendCommand::M2ZendrixSendCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                           const std::string& name, const std::string& data)
    : M2ZendrixConcreteCommand(mach, output, name, data) {
    call_client(report, [&](CZendrixCOM& client) { return client.Send(m_name, m_data); });
}
