#include "m2zendrixscancommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16, "M2ZendrixScanCommand(): Scan() failed"),
                                     call_report::once("m_pZendrixCom->Scan()")};
}

M2ZendrixScanCommand::M2ZendrixScanCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                           const MMachAxisTargets& targets)
    : M2ZendrixConcreteScanCommand(mach, output, targets) {
    std::vector<Position> positions = scan_positions(m_targets);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.Scan(positions.size(), positions.data(), &m_commandId);
    });
}
