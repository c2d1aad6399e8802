#include "m2zendrixscanbasecommand.h"

#include "m2zendrixpositions.h"

namespace {
constexpr M2ZendrixCallReport report{
    // The words and the operation are not its own: readers of the log know them so.
    call_report::text("M2ZendrixInitCommand(): unknown channel"), call_report::once("m_pZendrixCom->Scan()")};
}

M2ZendrixScanbaseCommand::M2ZendrixScanbaseCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                   const AxisSet& axes)
    : M2ZendrixConcreteCommand(mach, output, axes) {
    std::vector<std::string> names = axis_names(m_axes);
    call_client_with_machine(report, [&](CZendrixCOM& client) { return client.SetScanBase(names); });
}
