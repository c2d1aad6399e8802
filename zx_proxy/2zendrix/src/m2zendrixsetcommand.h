#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachsetcommand.h"

// Writes the values of axes.
class M2ZendrixSetCommand : public M2ZendrixConcreteCommand<MMachSetCommand> {
public:
    M2ZendrixSetCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                        const std::map<std::string, double>& values);
};
