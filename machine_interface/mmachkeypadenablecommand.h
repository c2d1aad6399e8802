#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachKeypadEnableCommand : public MMachCommand {
public:
    MMachKeypadEnableCommand(MOutputChannel* output, const AxisSet& axes)
        : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachKeypadEnableCommand"; }
    const char* GetCommandName() override { return "keypad enable"; }

    AxisSet m_axes;
};
