#include "m2zendrixprobeoffsetcommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::bare_once("m_pZendrixCom->ProbeOffset()")};
}

M2ZendrixProbeOffsetCommand::M2ZendrixProbeOffsetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                         const AxisTargetMap& targets)
    : M2ZendrixConcreteCommand(mach, output, targets) {
    std::vector<Position> positions = target_positions(m_targets);
    call_client(report, [&](CZendrixCOM& client) {
        return client.ProbeOffset(positions.size(), positions.data(), &m_commandId);
    });
}
