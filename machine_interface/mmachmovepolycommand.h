#pragma once

#include <vector>

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachMovepolyCommand : public MMachCommand {
public:
    MMachMovepolyCommand(MOutputChannel* output, const std::vector<AxisTargetMap>& points)
        : MMachCommand(output), m_points(points) {}

    static const char* ClassName() { return "MMachMovepolyCommand"; }
    const char* GetCommandName() override { return "movepoly"; }

    std::vector<AxisTargetMap> m_points;
};
