#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobeloadcommand.h"

// Takes a probe up.
class M2ZendrixProbeLoadCommand : public M2ZendrixConcreteCommand<MMachProbeLoadCommand> {
public:
    M2ZendrixProbeLoadCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, long probe, long tip);
};
