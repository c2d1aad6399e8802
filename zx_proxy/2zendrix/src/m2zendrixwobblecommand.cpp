#include "m2zendrixwobblecommand.h"

#include "stl_utilities.h"

M2ZendrixWobbleCommand::M2ZendrixWobbleCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                               const MMachWobbleParameters& parameters)
    : M2ZendrixConcreteCommand(mach, output, parameters) {
    const double* v = m_parameters.values;
    // The log shows the numbers, without the closing parenthesis: readers of the log know it so.
    const std::string operation =
        stl_string_format("m_pZendrixCom->SetWobble(%g,%g,%g,%g,%g,%g,", v[0], v[1], v[2], v[3], v[4], v[5]);
    const M2ZendrixCallReport report{call_report::line_once(16), call_report::bare_once(operation.c_str())};
    call_client(report,
                [&](CZendrixCOM& client) { return client.SetWobble(v[0], v[1], v[2], v[3], v[4], v[5]); });
}
