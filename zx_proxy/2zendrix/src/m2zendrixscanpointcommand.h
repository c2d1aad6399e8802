#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachscanpointcommand.h"

// Measures one point at the targets.
class M2ZendrixScanpointCommand : public M2ZendrixConcreteScanCommand<MMachScanpointCommand> {
public:
    M2ZendrixScanpointCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                              const MMachAxisTargets& targets);
};
