#include "m2zendrixprobedefinecommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::bare_once("m_pZendrixCom->ProbeDefine()")};
}

M2ZendrixProbeDefineCommand::M2ZendrixProbeDefineCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                         long probe, long tip,
                                                         const std::map<std::string, double>& values)
    : M2ZendrixConcreteCommand(mach, output) {
    const auto value = [&](const char* key) {
        const auto found = values.find(key);
        return found == values.end() ? 0.0 : found->second;
    };
    call_client(report, [&](CZendrixCOM& client) {
        return client.ProbeDefine(probe, tip, value("x"), value("y"), value("z"), value("d"));
    });
}
