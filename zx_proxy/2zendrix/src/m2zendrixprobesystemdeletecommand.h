#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachprobesystemdeletecommand.h"

// Forgets an id of a probe system; ended at once.
class M2ZendrixProbesystemDeleteCommand : public M2ZendrixConcreteCommand<MMachProbesystemDeleteCommand> {
public:
    M2ZendrixProbesystemDeleteCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                      const std::string& name, long id);
};
