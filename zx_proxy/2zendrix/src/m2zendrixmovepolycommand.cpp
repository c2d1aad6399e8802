#include "m2zendrixmovepolycommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::once("m_pZendrixCom->MovePoly()")};
}

M2ZendrixMovepolyCommand::M2ZendrixMovepolyCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                   const std::vector<AxisTargetMap>& points)
    : M2ZendrixConcreteCommand(mach, output, points) {
    std::vector<Position> positions = polygon_positions(m_points);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.MovePoly(m_points.size(), positions.size(), positions.data(), &m_commandId);
    });
}
