#include "m2zendrixinitcommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::text("M2ZendrixInitCommand(): unknown channel"),
                                     call_report::always("m_pZendrixCom->Init()")};
}

M2ZendrixInitCommand::M2ZendrixInitCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                           const AxisSet& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names = axis_names(m_axes);
    call_client_with_machine(report, [&](CZendrixCOM& client) {
        return names.empty() ? client.Init(&m_commandId) : client.InitAxes(names, &m_commandId);
    });
}
