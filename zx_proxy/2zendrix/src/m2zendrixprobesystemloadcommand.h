#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobesystemloadcommand.h"

// Makes a probe system the active one, whoever holds the machine.
class M2ZendrixProbesystemLoadCommand : public M2ZendrixConcreteCommand<MMachProbesystemLoadCommand> {
public:
    M2ZendrixProbesystemLoadCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                    const std::string& name, long id);
};
