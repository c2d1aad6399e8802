#pragma once

#include <vector>

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachScanCommand : public MMachCommand {
public:
    MMachScanCommand(MOutputChannel* output, const MMachAxisTargets& targets)
        : MMachCommand(output), m_targets(targets) {}

    static const char* ClassName() { return "MMachScanCommand"; }
    const char* GetCommandName() override { return "scan"; }

    // Swaps the oldest measured point into `point` and returns true; false, and `point` as it was, if none
    // waits. Drain until false after IsDone, then delete the command.
    virtual bool GetNextScanPoint(std::vector<double>& point) = 0;

    MMachAxisTargets m_targets;
};
