#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmovecirclecommand.h"

// Moves along a circle.
class M2ZendrixMoveCircleCommand : public M2ZendrixConcreteCommand<MMachMovecircleCommand> {
public:
    M2ZendrixMoveCircleCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                               const MMachCircle& circle);
};
