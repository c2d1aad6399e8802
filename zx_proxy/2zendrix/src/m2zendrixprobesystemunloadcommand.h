#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobesystemunloadcommand.h"

// Takes the active probe system out of use, whoever holds the machine.
class M2ZendrixProbesystemUnloadCommand : public M2ZendrixConcreteCommand<MMachProbesystemUnloadCommand> {
public:
    M2ZendrixProbesystemUnloadCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output);
};
