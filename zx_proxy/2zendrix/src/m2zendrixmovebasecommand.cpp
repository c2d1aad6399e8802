#include "m2zendrixmovebasecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{
    // The words and the operation are not its own: readers of the log know them so.
    call_report::text("M2ZendrixInitCommand(): unknown channel"), call_report::once("m_pZendrixCom->Move()")};
}

M2ZendrixMovebaseCommand::M2ZendrixMovebaseCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                   const AxisSet& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names = axis_names(m_axes);
    call_client_with_machine(report, [&](CZendrixCOM& client) { return client.SetMoveBase(names); });
}
