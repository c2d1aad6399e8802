#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobedefinecommand.h"

// Defines a tip by its values "x", "y", "z" and "d", 0 for one that is missing; ended at once.
class M2ZendrixProbeDefineCommand : public M2ZendrixConcreteCommand<MMachProbeDefineCommand> {
public:
    M2ZendrixProbeDefineCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, long probe, long tip,
                                const std::map<std::string, double>& values);
};
