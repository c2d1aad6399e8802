#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachwobblecommand.h"

// Sets the motion of the wobble by its six numbers; ended at once.
class M2ZendrixWobbleCommand : public M2ZendrixConcreteCommand<MMachWobbleCommand> {
public:
    M2ZendrixWobbleCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                           const MMachWobbleParameters& parameters);
};
