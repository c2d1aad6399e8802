#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachgetcommand.h"

// Reads the values of axes, whoever holds the machine; the values are there at once.
class M2ZendrixGetCommand : public M2ZendrixConcreteCommand<MMachGetCommand> {
public:
    M2ZendrixGetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                        const std::vector<std::string>& axes);
};
