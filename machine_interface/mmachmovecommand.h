#pragma once

#include "mmachaxistargets.h"
#include "mmachcommand.h"

class MMachMoveCommand : public MMachCommand {
public:
    MMachMoveCommand(MOutputChannel* output, const MMachAxisTargets& targets)
        : MMachCommand(output), m_targets(targets) {}

    static const char* ClassName() { return "MMachMoveCommand"; }
    const char* GetCommandName() override { return "move"; }

    MMachAxisTargets m_targets;
};
