#include "m2zendrixspinenablecommand.h"

namespace {
constexpr M2ZendrixCallReport report{
    call_report::text("SpinEnable failed"),
    call_report::always("M2ZendrixSpinEnableCommand::M2ZendrixSpinEnableCommand(): SpinEnable()")};
}

M2ZendrixSpinEnableCommand::M2ZendrixSpinEnableCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                       const std::map<std::string, bool>& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names;
    for (const auto& [axis, positive] : m_axes) names.push_back(positive ? axis : "-" + axis);
    call_client(report, [&](CZendrixCOM& client) { return client.SpinEnable(names); });
}
