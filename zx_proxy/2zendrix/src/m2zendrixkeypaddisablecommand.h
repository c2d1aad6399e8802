#pragma once

#include "m2zendrixconcretecommand.h"
#include "mmachkeypaddisablecommand.h"

// Switches the keypad off for axes.
class M2ZendrixKeypadDisableCommand : public M2ZendrixConcreteCommand<MMachKeypadDisableCommand> {
public:
    M2ZendrixKeypadDisableCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const AxisSet& axes);
};
