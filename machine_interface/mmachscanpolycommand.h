#pragma once

#include <vector>

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachScanpolyCommand : public MMachCommand {
public:
    MMachScanpolyCommand(MOutputChannel* output, const std::vector<AxisTargetMap>& points)
        : MMachCommand(output), m_points(points) {}

    static const char* ClassName() { return "MMachScanpolyCommand"; }
    const char* GetCommandName() override { return "scanpoly"; }

    // Swaps the oldest measured point into `point` and returns true; false, and `point` as it was, if none
    // waits. Drain until false after IsDone, then delete the command.
    virtual bool GetNextScanPoint(std::vector<double>& point) = 0;

    std::vector<AxisTargetMap> m_points;
};
