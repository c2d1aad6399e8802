#include "m2zendrixgetcommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::text("M2ZendrixGetCommand(): unknown channel"),
                                     call_report::always("m_pZendrixCom->Get()")};
}

M2ZendrixGetCommand::M2ZendrixGetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                         const std::vector<std::string>& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<Position> positions = plain_positions(m_axes);
    call_client(report, [&](CZendrixCOM& client) {
        if (!client.Get(positions)) return false;
        for (const Position& position : positions) m_values.push_back(position.value);
        return true;
    });
}
