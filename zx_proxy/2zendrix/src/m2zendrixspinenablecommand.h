#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachspinenablecommand.h"

// Makes axes spin, those with false the other way; ended at once, so there is nothing to abort.
class M2ZendrixSpinEnableCommand : public M2ZendrixConcreteCommand<MMachSpinEnableCommand> {
public:
    M2ZendrixSpinEnableCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                               const std::map<std::string, bool>& axes);

    void Abort() override {}
};
