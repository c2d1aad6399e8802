#include "m2zendrixmovezerocommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::once("m_pZendrixCom->MoveZero()")};
}

M2ZendrixMovezeroCommand::M2ZendrixMovezeroCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                   const MMachAxisTargets& targets)
    : M2ZendrixConcreteCommand(mach, output, targets) {
    std::vector<Position> positions = target_positions(m_targets.m_targets);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.MoveZero(positions.size(), positions.data(), &m_commandId);
    });
}
