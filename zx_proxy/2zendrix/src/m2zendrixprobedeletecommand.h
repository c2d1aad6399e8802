#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobedeletecommand.h"

// Forgets a tip; ended at once.
class M2ZendrixProbeDeleteCommand : public M2ZendrixConcreteCommand<MMachProbeDeleteCommand> {
public:
    M2ZendrixProbeDeleteCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, long probe, long tip);
};
