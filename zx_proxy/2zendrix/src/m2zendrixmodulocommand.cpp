#include "m2zendrixmodulocommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::once("m_pZendrixCom->Modulo()")};
}

M2ZendrixModuloCommand::M2ZendrixModuloCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                               const AxisSet& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names = axis_names(m_axes);
    call_client_with_machine(report, [&](CZendrixCOM& client) { return client.Modulo(names); });
}
