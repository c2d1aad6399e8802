#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachscandatacommand.h"

// Chooses the values of each scan point.
class M2ZendrixScandataCommand : public M2ZendrixConcreteCommand<MMachScandataCommand> {
public:
    M2ZendrixScandataCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                             const std::vector<std::string>& names);
};
