#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachSpinDisableCommand : public MMachCommand {
public:
    MMachSpinDisableCommand(MOutputChannel* output, const AxisSet& axes)
        : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachSpinDisableCommand"; }
    const char* GetCommandName() override { return "spin disable"; }

    AxisSet m_axes;
};
