#pragma once

#include <vector>

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachScanconeCommand : public MMachCommand {
public:
    MMachScanconeCommand(MOutputChannel* output, const MMachCone& cone)
        : MMachCommand(output), m_cone(cone) {}

    static const char* ClassName() { return "MMachScanconeCommand"; }
    const char* GetCommandName() override { return "scancone"; }

    // Swaps the oldest measured point into `point` and returns true; false, and `point` as it was, if none
    // waits. Drain until false after IsDone, then delete the command.
    virtual bool GetNextScanPoint(std::vector<double>& point) = 0;

    MMachCone m_cone;
};
