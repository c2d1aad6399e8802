#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachresetcommand.h"

// Resets the machine; ended at once.
class M2ZendrixResetCommand : public M2ZendrixConcreteCommand<MMachResetCommand> {
public:
    M2ZendrixResetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output);
};
