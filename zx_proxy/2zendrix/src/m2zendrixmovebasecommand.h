#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmovebasecommand.h"

// Chooses the base axes of motions; ended at once.
class M2ZendrixMovebaseCommand : public M2ZendrixConcreteCommand<MMachMovebaseCommand> {
public:
    M2ZendrixMovebaseCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const AxisSet& axes);
};
