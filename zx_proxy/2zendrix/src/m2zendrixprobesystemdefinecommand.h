#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobesystemdefinecommand.h"

// Defines an id of a probe system; ended at once.
class M2ZendrixProbesystemDefineCommand : public M2ZendrixConcreteCommand<MMachProbesystemDefineCommand> {
public:
    M2ZendrixProbesystemDefineCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                      const MMachProbesystemDefinition& definition);
};
