#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachModuloCommand : public MMachCommand {
public:
    MMachModuloCommand(MOutputChannel* output, const AxisSet& axes) : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachModuloCommand"; }
    const char* GetCommandName() override { return "modulo"; }

    AxisSet m_axes;
};
