#include "m2zendrixprobesystemdefinecommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(24),
                                     call_report::bare_once("m_pZendrixCom->Get()")};
}

M2ZendrixProbesystemDefineCommand::M2ZendrixProbesystemDefineCommand(
    M2ZendrixMachAbstract* mach, MOutputChannel* output, const MMachProbesystemDefinition& definition)
    : M2ZendrixConcreteCommand(mach, output) {
    const double* v = definition.values;
    call_client(report, [&](CZendrixCOM& client) {
        return client.ProbesystemDefine(definition.name.c_str(), definition.id, v[0], v[1], v[2], v[3], v[4],
                                        v[5]);
    });
}
