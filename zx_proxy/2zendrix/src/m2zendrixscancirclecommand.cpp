#include "m2zendrixscancirclecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::once("m_pZendrixCom->ScanCircle()")};
}

M2ZendrixScancircleCommand::M2ZendrixScancircleCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                       const MMachCircle& circle)
    : M2ZendrixConcreteScanCommand(mach, output, circle) {
    const double* p = m_circle.parameters;
    std::vector<Position> positions = target_positions(m_circle.axes.m_targets);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.ScanCircle(p[0], p[1], p[2], p[3], p[4], p[5], p[6], positions.size(),
                                 records_or_null(positions), &m_commandId);
    });
}
