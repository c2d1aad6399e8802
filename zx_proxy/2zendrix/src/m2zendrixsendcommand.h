#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachsendcommand.h"

// Hands a named block to the machine, whoever holds it; ended at once, so there is nothing to abort.
class M2ZendrixSendCommand : public M2ZendrixConcreteCommand<MMachSendCommand> {
public:
    M2ZendrixSendCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const std::string& name,
                         const std::string& data);

    void Abort() override {}
};
