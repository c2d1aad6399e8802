#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmodulocommand.h"

// Brings rotary axes back into one turn; ended at once, so there is nothing to abort.
class M2ZendrixModuloCommand : public M2ZendrixConcreteCommand<MMachModuloCommand> {
public:
    M2ZendrixModuloCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const AxisSet& axes);

    void Abort() override {}
};
