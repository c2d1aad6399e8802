#include "m2zendrixspindisablecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{
    call_report::text("SpinDisable failed"),
    call_report::always("M2ZendrixSpinDisableCommand::M2ZendrixSpinDisableCommand(): SpinDisable()")};
}

M2ZendrixSpinDisableCommand::M2ZendrixSpinDisableCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                         const AxisSet& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names = axis_names(m_axes);
    call_client(report, [&](CZendrixCOM& client) { return client.SpinDisable(names); });
}
