#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachmovehomecommand.h"

// Moves all axes home.
class M2ZendrixMovehomeCommand : public M2ZendrixConcreteCommand<MMachMovehomeCommand> {
public:
    M2ZendrixMovehomeCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output);
};
