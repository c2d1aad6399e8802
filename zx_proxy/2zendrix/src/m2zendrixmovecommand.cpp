#include "m2zendrixmovecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16), call_report::once("m_pZendrixCom->Move()")};
}

M2ZendrixMoveCommand::M2ZendrixMoveCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                           const MMachAxisTargets& targets)
    : M2ZendrixConcreteCommand(mach, output, targets) {
    std::vector<Position> positions = limit_positions(m_targets.m_targets);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return client.Move(positions.size(), positions.data(), &m_commandId);
    });
}
