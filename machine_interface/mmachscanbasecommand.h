#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachScanbaseCommand : public MMachCommand {
public:
    MMachScanbaseCommand(MOutputChannel* output, const AxisSet& axes) : MMachCommand(output), m_axes(axes) {}

    static const char* ClassName() { return "MMachScanbaseCommand"; }
    const char* GetCommandName() override { return "scanbase"; }

    AxisSet m_axes;
};
