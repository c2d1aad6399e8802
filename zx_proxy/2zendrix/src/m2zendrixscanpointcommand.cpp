#include "m2zendrixscanpointcommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{
    call_report::number(16, "M2ZendrixScanpointCommand(): Scanpoint() failed"),
    call_report::always("m_pZendrixCom->Scanpoint()")};
}

M2ZendrixScanpointCommand::M2ZendrixScanpointCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                     const MMachAxisTargets& targets)
    : M2ZendrixConcreteScanCommand(mach, output, targets) {
    std::vector<Position> positions = scan_positions(m_targets);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.ScanPoint(positions.size(), positions.data(), &m_commandId);
    });
}
