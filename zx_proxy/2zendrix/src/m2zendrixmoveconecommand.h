#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmoveconecommand.h"

// Moves along a cone.
class M2ZendrixMoveConeCommand : public M2ZendrixConcreteCommand<MMachMoveconeCommand> {
public:
    M2ZendrixMoveConeCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const MMachCone& cone);
};
