#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachInitCommand : public MMachCommand {
public:
    MMachInitCommand(MOutputChannel* output, const AxisSet& axes) : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachInitCommand"; }
    const char* GetCommandName() override { return "init"; }

    AxisSet m_axes;
};
