#pragma once

#include <vector>

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachScancircleCommand : public MMachCommand {
public:
    MMachScancircleCommand(MOutputChannel* output, const MMachCircle& circle)
        : MMachCommand(output), m_circle(circle) {}

    static const char* ClassName() { return "MMachScancircleCommand"; }
    const char* GetCommandName() override { return "scancircle"; }

    // Swaps the oldest measured point into `point` and returns true; false, and `point` as it was, if none
    // waits. Drain until false after IsDone, then delete the command.
    virtual bool GetNextScanPoint(std::vector<double>& point) = 0;

    MMachCircle m_circle;
};
