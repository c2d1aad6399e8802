#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachMovecircleCommand : public MMachCommand {
public:
    MMachMovecircleCommand(MOutputChannel* output, const MMachCircle& circle)
        : MMachCommand(output), m_circle(circle) {}

    static const char* ClassName() { return "MMachMovecircleCommand"; }
    const char* GetCommandName() override { return "movecircle"; }

    MMachCircle m_circle;
};
