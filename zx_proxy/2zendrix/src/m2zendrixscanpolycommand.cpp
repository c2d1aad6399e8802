#include "m2zendrixscanpolycommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::once("m_pZendrixCom->ScanPoly()")};
}

M2ZendrixScanpolyCommand::M2ZendrixScanpolyCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                   const std::vector<AxisTargetMap>& points)
    : M2ZendrixConcreteScanCommand(mach, output, points) {
    std::vector<Position> positions = polygon_positions(points);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.ScanPoly(points.size(), positions.size(), positions.data(), &m_commandId);
    });
}
