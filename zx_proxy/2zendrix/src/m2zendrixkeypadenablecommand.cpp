#include "m2zendrixkeypadenablecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::text("M2ZendrixKeypadEnableCommand(): unknown channel"),
                                     call_report::always("m_pZendrixCom->KeyPad()")};
}

M2ZendrixKeypadEnableCommand::M2ZendrixKeypadEnableCommand(M2ZendrixMachAbstract* mach,
                                                           MOutputChannel* output, const AxisSet& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names = axis_names(m_axes);
    call_client_with_machine(report,
                             [&](CZendrixCOM& client) { return client.KeyPad(true, names, &m_commandId); });
}
