#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachKeypadDisableCommand : public MMachCommand {
public:
    MMachKeypadDisableCommand(MOutputChannel* output, const AxisSet& axes)
        : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachKeypadDisableCommand"; }
    const char* GetCommandName() override { return "keypad disable"; }

    AxisSet m_axes;
};
