#include "m2zendrixsetcommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16), call_report::once("m_pZendrixCom->Set()")};
}

M2ZendrixSetCommand::M2ZendrixSetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                         const std::map<std::string, double>& values)
    : M2ZendrixConcreteCommand(mach, output, values) {
    const std::vector<Position> positions = plain_positions(m_values);
    call_client_with_machine(report,
                             [&](CZendrixCOM& client) { return client.Set(positions, &m_commandId); });
}
