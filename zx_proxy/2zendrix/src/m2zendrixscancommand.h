#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachscancommand.h"

// Scans along a line to targets.
class M2ZendrixScanCommand : public M2ZendrixConcreteScanCommand<MMachScanCommand> {
public:
    M2ZendrixScanCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                         const MMachAxisTargets& targets);
};
