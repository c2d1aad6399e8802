#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachspindisablecommand.h"

// Makes axes spin no more; ended at once, so there is nothing to abort.
class M2ZendrixSpinDisableCommand : public M2ZendrixConcreteCommand<MMachSpinDisableCommand> {
public:
    M2ZendrixSpinDisableCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const AxisSet& axes);

    void Abort() override {}
};
