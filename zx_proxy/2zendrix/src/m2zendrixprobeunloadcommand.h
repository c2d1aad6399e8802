#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobeunloadcommand.h"

// Puts the probe away.
class M2ZendrixProbeUnloadCommand : public M2ZendrixConcreteCommand<MMachProbeUnloadCommand> {
public:
    M2ZendrixProbeUnloadCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output);
};
