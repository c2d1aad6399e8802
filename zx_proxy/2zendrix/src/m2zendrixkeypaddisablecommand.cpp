#include "m2zendrixkeypaddisablecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::text("M2ZendrixKeypadDisableCommand(): unknown channel"),
                                     call_report::always("m_pZendrixCom->KeyPad()")};
}

M2ZendrixKeypadDisableCommand::M2ZendrixKeypadDisableCommand(M2ZendrixMachAbstract* mach,
                                                             MOutputChannel* output, const AxisSet& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names = axis_names(m_axes);
    call_client_with_machine(report,
                             [&](CZendrixCOM& client) { return client.KeyPad(false, names, &m_commandId); });
}
