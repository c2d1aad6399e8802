#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachscancirclecommand.h"

// Scans along a circle.
class M2ZendrixScancircleCommand : public M2ZendrixConcreteScanCommand<MMachScancircleCommand> {
public:
    M2ZendrixScancircleCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                               const MMachCircle& circle);
};
