#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobechangecommand.h"

// Puts one probe in the place of another.
class M2ZendrixProbeChangeCommand : public M2ZendrixConcreteCommand<MMachProbeChangeCommand> {
public:
    M2ZendrixProbeChangeCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, long probe, long tip);
};
