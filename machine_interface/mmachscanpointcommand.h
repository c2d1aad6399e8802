#pragma once

#include <vector>

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachScanpointCommand : public MMachCommand {
public:
    MMachScanpointCommand(MOutputChannel* output, const MMachAxisTargets& targets)
        : MMachCommand(output), m_targets(targets) {}

    static const char* ClassName() { return "MMachScanpointCommand"; }
    const char* GetCommandName() override { return "scanpoint"; }

    // Swaps the oldest measured point into `point` and returns true; false, and `point` as it was, if none
    // waits. Drain until false after IsDone, then delete the command.
    virtual bool GetNextScanPoint(std::vector<double>& point) = 0;

    MMachAxisTargets m_targets;
};
