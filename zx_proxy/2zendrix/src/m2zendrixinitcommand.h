#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachinitcommand.h"

// Initialises the axes named, or the whole machine if none is.
class M2ZendrixInitCommand : public M2ZendrixConcreteCommand<MMachInitCommand> {
public:
    M2ZendrixInitCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const AxisSet& axes);
};
