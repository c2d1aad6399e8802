#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachscanconecommand.h"

// Scans along a cone.
class M2ZendrixScanconeCommand : public M2ZendrixConcreteScanCommand<MMachScanconeCommand> {
public:
    M2ZendrixScanconeCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const MMachCone& cone);
};
