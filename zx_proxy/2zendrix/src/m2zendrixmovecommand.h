#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmovecommand.h"

// Moves axes to targets, or to the limits of their travel.
class M2ZendrixMoveCommand : public M2ZendrixConcreteCommand<MMachMoveCommand> {
public:
    M2ZendrixMoveCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                         const MMachAxisTargets& targets);
};
