#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobeoffsetcommand.h"

// Sets the offsets of the active probe, whoever holds the machine.
class M2ZendrixProbeOffsetCommand : public M2ZendrixConcreteCommand<MMachProbeOffsetCommand> {
public:
    M2ZendrixProbeOffsetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                const AxisTargetMap& targets);
};
