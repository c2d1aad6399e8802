#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachkeypadenablecommand.h"

// Switches the keypad on for axes.
class M2ZendrixKeypadEnableCommand : public M2ZendrixConcreteCommand<MMachKeypadEnableCommand> {
public:
    M2ZendrixKeypadEnableCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const AxisSet& axes);
};
