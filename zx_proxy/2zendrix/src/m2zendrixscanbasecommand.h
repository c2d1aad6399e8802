#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachscanbasecommand.h"

// Chooses the base axes of scans; ended at once.
class M2ZendrixScanbaseCommand : public M2ZendrixConcreteCommand<MMachScanbaseCommand> {
public:
    M2ZendrixScanbaseCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const AxisSet& axes);
};
