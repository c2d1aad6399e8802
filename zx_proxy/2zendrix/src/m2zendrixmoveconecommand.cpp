#include "m2zendrixmoveconecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::once("m_pZendrixCom->MoveCone()")};
}

M2ZendrixMoveConeCommand::M2ZendrixMoveConeCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                   const MMachCone& cone)
    : M2ZendrixConcreteCommand(mach, output, cone) {
    const double* p = m_cone.parameters;
    const double* more = m_cone.more;
    std::vector<Position> positions = target_positions(m_cone.axes.m_targets);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.MoveCone(p[0], p[1], p[2], p[3], p[4], p[5], p[6], more[0], more[1], positions.size(),
                               records_or_null(positions), &m_commandId);
    });
}
