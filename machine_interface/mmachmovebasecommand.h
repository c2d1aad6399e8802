#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachMovebaseCommand : public MMachCommand {
public:
    MMachMovebaseCommand(MOutputChannel* output, const AxisSet& axes) : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachMovebaseCommand"; }
    const char* GetCommandName() override { return "movebase"; }

    AxisSet m_axes;
};
