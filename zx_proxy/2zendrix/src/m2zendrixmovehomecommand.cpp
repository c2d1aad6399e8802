#include "m2zendrixmovehomecommand.h"

namespace {
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::bare_once("m_pZendrixCom->Execute(\"movehome\")")};
}

M2ZendrixMovehomeCommand::M2ZendrixMovehomeCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output)
    : M2ZendrixConcreteCommand(mach, output) {
    std::vector<std::string> no_arguments;
    call_client_with_machine(
        report, [&](CZendrixCOM& client) { return client.Execute("movehome", no_arguments, &m_commandId); });
}
