#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmovezerocommand.h"

// Drives axes towards targets until the probe touches.
class M2ZendrixMovezeroCommand : public M2ZendrixConcreteCommand<MMachMovezeroCommand> {
public:
    M2ZendrixMovezeroCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                             const MMachAxisTargets& targets);
};
